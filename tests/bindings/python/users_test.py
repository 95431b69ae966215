"""Web users and outliners in an SQLite database."""
import sqlite3
import tempfile
import unittest
from pathlib import Path

from support import ROOT, ThreadedTest

from oxaqrycln import Account, Archive, BadArgument, DatabaseFailed, Users

RIGHTS = r"""
INSERT INTO Users (UserID, UserName) VALUES (1, 'Sales'), (2, 'anna'), (3, 'nobody');
INSERT INTO UserGroups (UserID, GroupID) VALUES (2, 1);
INSERT INTO UserChannels VALUES (2, 'Finance'), (1, 'Mail');
INSERT INTO UserArchives VALUES (2, '$(#Finance)\Orders'), (2, '$(#Technik)\Plans');
INSERT INTO UserRights VALUES (2, 3), (1, 7);
INSERT INTO UserEditRights VALUES (2, '$(#Finance)\Orders, old', 1, 0, 1);
INSERT INTO UserDocRights VALUES (2, 1);
INSERT INTO UserSearchRights VALUES (2, 1), (2, 2);
"""


class UsersTest(ThreadedTest):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = Path(directory.name)
        self.file = self.directory / "users.sqlite"
        self.run_sql(*((ROOT / "userdb" / name).read_text(encoding="utf-8") for name in ("schema.sql", "sample.sql")), RIGHTS)
        self.database = f"Driver={{SQLite3}};Database={self.file}"

    def run_sql(self, *texts):
        database = sqlite3.connect(self.file)
        for text in texts:
            database.executescript(text)
        database.close()

    def test_log_on_and_change_their_passwords(self):
        users = Users(database=self.database)
        jo = users.create("Jörg", "Passwort", Account("webuser", "secret"))
        self.assertEqual((users.log_on("Jörg", "Passwort"), users.find("Jörg"), users.find("none")), (jo, jo, None))
        for name, password in [("Jörg", "wrong"), ("nobody", "Passwort"), ("x' OR 'a'='a", "y"), ("Łukasz", "x"),
                               ("Jörg", "\ud800")]:
            with self.subTest(name):
                self.assertIsNone(users.log_on(name, password))
        for lost in ("Paßwort", "xÿ"):
            self.assertRaises(BadArgument, users.create, "Anna", lost)
            self.assertRaises(BadArgument, users.change_password, "Jörg", "Passwort", lost)
        self.assertFalse(users.change_password("Jörg", "wrong", "new"))
        self.assertTrue(users.change_password("Jörg", "Passwort", "new"))
        self.assertEqual(users.log_on("Jörg", "new"), jo)
        self.assertFalse(users.must_change_password(jo))
        users.set_must_change_password(jo, True)
        self.assertTrue(users.must_change_password(jo))
        self.assertEqual(users.account_of(jo), Account("webuser", "secret"))
        self.assertNotIn("secret", repr(users.account_of(jo)))
        self.assertIsNone(users.account_of(1))
        self.run_sql("ALTER TABLE Users RENAME TO Gone")
        self.assertRaises(DatabaseFailed, users.log_on, "Jörg", "new")  # a dead database is no wrong password

    def test_rights_fail_closed(self):
        users = Users(database=self.database)
        self.assertEqual((sorted(users.rights(2)), users.groups(2), users.groups(3)), ([3, 7], ["Sales"], []))
        right = users.edit_rights(2)[0]
        self.assertEqual(right, ("$(#Finance)\\Orders, old", True, False, True))
        self.assertEqual(users.document_conditions(2, "Finance", "Invoices")[1].value, "5000")
        rights = users.rights_to_search(2, "Finance", "Invoices")
        self.assertEqual((rights.fixed_values, rights.hidden_fields, rights.fields_without_matchcode),
                         ((("12", "Papiermühle Ährental"),), ("15",), ("11", "15")))
        # Only channels that the user sees, and of them the archives that are listed.
        self.assertEqual((users.folder_rights(2), users.folder_rights(3)), ("$(#Finance)\\Orders;$(#Mail);", ""))
        self.run_sql("INSERT INTO UserChannels VALUES (3, 'A)$(#B')")
        self.assertRaises(DatabaseFailed, users.folder_rights, 3)
        self.run_sql("DELETE FROM UserChannels; INSERT INTO UserChannels VALUES (3, 'A'); DROP TABLE UserArchives")
        self.assertRaises(DatabaseFailed, users.folder_rights, 3)
        self.run_sql("UPDATE DocRightFields SET Val = 'a^,^b'")
        self.assertRaises(DatabaseFailed, users.document_conditions, 2, "Finance", "Invoices")

    def test_an_archive_shares_its_database_and_logs_no_password_of_it(self):
        logs = self.directory / "logs"
        logs.mkdir()
        with Archive(**self.server.settings, database=self.database + ";PWD=hidden", log_dir=logs, session="S9") as archive:
            self.assertEqual(archive.users.find("anna"), 2)
            self.assertEqual(archive.search("copper", rights=archive.users.folder_rights(3)).total, 0)
            self.assertEqual(archive.outline("Finance", "Orders")[0].name, "Customers by year")
            nodes = archive.nodes("1")
            self.assertEqual([(node.content, node.child_count) for node in nodes],
                             [("Bäckerei Größling", 2), ("Nordlicht Optik", 2)])
            self.assertEqual(archive.node_query(archive.nodes("1", nodes[1].id)[0].id), '12:"Nordlicht Optik" AND 14:2025')
        log = (logs / "S9.log").read_text(encoding="cp1252")
        self.assertIn("session id S9", log)
        self.assertNotIn("hidden", log)


if __name__ == "__main__":
    unittest.main()
