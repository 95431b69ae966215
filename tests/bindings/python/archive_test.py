"""The upper level against the development archive server."""
import copy
import io
import pickle
import tempfile
import threading
import unittest
from concurrent.futures import ThreadPoolExecutor
from datetime import datetime
from pathlib import Path
from unittest import mock

from support import CannedServer, SilentServer, ThreadedTest, unused_server

from oxaqrycln import (AllServersBusy, Archive, BadArgument, Cancelled, ColumnKind, ConnectionFailed, Content, DatabaseFailed, DocumentName,
                       Error, FieldContent, HitList, Mark, MarkedText, Refused, TimedOut, WrongThread, raw)
from oxaqrycln._files import content_text, title_text
from oxaqrycln.documents import note_of, without_marks
from oxaqrycln.text import date_of, fields, number_of, with_network_line_ends

LETTER = DocumentName("Mail", "Inbox", "1262")


class ArchiveTest(ThreadedTest):
    def setUp(self):
        self.archive = Archive(**self.server.settings)
        self.addCleanup(self.archive.close)

    def test_lists_what_the_server_offers(self):
        archive = self.archive
        self.assertEqual(archive.channels()[0].name, "Büro")
        channels = archive.archives()
        self.assertEqual((channels[0].archives[1].comment, channels[-1].archives), ("Letters sent", ()))
        self.assertIn("Full text", archive.formats("Mail", "Inbox"))
        self.assertTrue(archive.properties("Büro", "Protokolle").can_create)
        masks = archive.masks("Finance", "Orders")
        self.assertEqual((len(masks), masks[1].fields[1].is_list_only, masks[0].fields[0].width), (2, True, 40))

    def test_a_hit_list_owns_its_rows_and_sorts_them(self):
        hits = self.archive.search("copper", max=10, layout="2")
        self.assertEqual((len(hits), hits.layout[0]), (10, ("12", "Customer")))
        self.assertGreater(hits.total, 10)
        self.archive.channels()  # replaces the records of the class
        self.assertEqual([hits.kind_of(i) for i in (1, 2, 3)], [ColumnKind.TEXT, ColumnKind.DATE, ColumnKind.NUMBER])

        def titles():
            return [hit.value("title") for hit in hits]
        before = titles()
        hits.sort(hits.column("Title"))
        self.assertEqual(titles(), sorted(before))
        hits.sort(hits.column("2"), descending=True)
        self.assertEqual(titles(), sorted(before, reverse=True))
        hits.sort(hits.column("Amount"))
        amounts = [float(hit.value(3).replace(",", ".")) for hit in hits if hit.value(3)]
        self.assertTrue(amounts == sorted(amounts) and amounts)
        second, last = hits[1], hits[-1]
        hits.remove(0)
        self.assertEqual((hits[0], hits[1:][-1], len(hits)), (second, last, 9))
        self.assertEqual(self.archive.describe(hits[0]).name, second.document)
        for wrong in (lambda: hits.sort(4), lambda: hits.column("none"), lambda: hits.remove(9), lambda: hits.kind_of(-1)):
            self.assertRaises(BadArgument, wrong)
        self.assertRaises(IndexError, lambda: hits[9])

    def test_rows_are_read_before_they_would_be_lost_and_only_if_the_list_is_still_there(self):
        query = self.archive.query
        want = list(self.archive.search("copper", max=5))
        for name, use in [("remove", lambda hits: hits.remove(4)), ("copy", copy.copy), ("pickle", pickle.dumps),
                          ("a call of the raw query", lambda _: query.TELOGetChannelsInit()),
                          ("another search", lambda _: self.archive.search("paper").total), ("close", lambda _: self.archive.close())]:
            with self.subTest(name):
                hits = self.archive.search("copper", max=5)
                use(hits)
                self.assertEqual([hits.total, *hits][:5], [21, *want[:4]])
        with Archive(**self.server.settings) as archive:
            with mock.patch.object(raw.Query, "fetch_rows") as fetch:
                for _ in range(2):
                    self.assertEqual(len(archive.search("copper", max=5)), 5)
            fetch.assert_not_called()

    def test_an_error_in_the_rows_is_that_of_the_list_and_an_interrupt_leaves_them_to_be_read(self):
        with mock.patch.object(raw.Query, "fetch_rows", side_effect=Error("no rows")):
            hits = self.archive.search("copper")
            self.archive.live()
        for _ in range(2):
            self.assertRaisesRegex(Error, "no rows", lambda: hits[0])
        hits = self.archive.search("copper")
        with mock.patch.object(raw.Query, "fetch_rows", side_effect=KeyboardInterrupt):
            self.assertRaises(KeyboardInterrupt, self.archive.live)
        self.archive.live()
        self.assertEqual(len(list(hits)), 21)

    def test_a_list_belongs_to_any_thread_once_it_is_read(self):
        hits = self.archive.search("copper")
        with self.assertRaisesRegex(WrongThread, r"read\(\)"), ThreadPoolExecutor() as pool:
            pool.submit(lambda: hits[0]).result()
        self.assertEqual(len(hits.read()), 21)
        self.assertEqual(self.in_own_thread(lambda: hits[0].value("title")), hits[0].value("title"))
        hits = self.archive.search("copper")
        self.in_own_thread(self.archive.close)  # which cannot read them
        self.assertRaisesRegex(Error, "closed", lambda: hits[0])

    def test_rights_restrict_a_search_and_fail_closed(self):
        self.assertEqual({hit.channel for hit in self.archive.search("copper", rights="$(#Mail);")}, {"Mail"})
        self.archive.channels()
        before = self.archive.last_request
        for nothing in ("", ";", " ; "):
            with self.subTest(nothing):
                hits = self.archive.search("copper", rights=nothing)
                self.assertEqual((list(hits), hits.total, hits.columns), ([], 0, ()))
        self.assertEqual(self.archive.last_request, before)
        self.assertGreater(self.archive.search("copper", rights=None).total, 0)

    def test_a_document_has_its_marks_and_dates(self):
        document = self.archive.document(LETTER, "price")
        self.assertEqual((document.name.version, document.created), ("2", datetime(2026, 11, 16)))
        marked = [piece.text for segment in document.segments for piece in segment.text.pieces() if piece.is_marked]
        self.assertEqual(set(marked), {"price"})
        self.assertEqual(len(marked), sum(segment.hit_count for segment in document.segments))
        with self.assertRaisesRegex(Refused, "999999"):
            self.archive.document(DocumentName("Mail", "Inbox", "999999"))

    def test_creates_edits_and_deletes_and_leaves_no_import_file(self):
        archive = self.archive
        evil = "first\r\n@FIELD,12\r\nHafenkontor\n@DB,$(#Mail)\\Inbox\r\n@end"
        name = archive.create("Finance", "Orders", "Bestellung über Rohre",
                              [FieldContent(1, 11, "Anna"), FieldContent(1, 16, evil)])
        made = archive.document(name)
        text = next(segment.text.text for segment in made.segments if segment.field_id == 16)
        self.assertTrue(made.title == "Bestellung über Rohre" and "@FIELD,12" in text and "@end" in text, text)
        archive.add_note(name, "Bitte prüfen,\ndann weiter")
        note = archive.document(name).notes[0]
        self.assertEqual((note.author, note.text), ("webuser", "Bitte prüfen,\ndann weiter"))
        self.assertGreater(note.time, datetime(2020, 1, 1))
        archive.delete_notes(name)
        self.assertEqual(archive.notes(name), [])
        edited = archive.edit(name, "Neue Bestellung", [FieldContent(1, 16, "second")])
        self.assertEqual((edited.id, edited.version), (name.id, "2"))
        archive.delete(edited._replace(version=""))
        self.assertRaises(Refused, archive.document, edited)
        self.assertRaises(BadArgument, archive.create, "Finance", "Orders", "two\nlines", [])
        self.assertEqual(list(self.server.blobs.glob("*.import")), [])

    def test_moves_files_and_streams_in_both_directions(self):
        archive, content, seen = self.archive, b"\0\r\nbytes", []
        path = archive.fetch(LETTER._replace(version="2"), Content.of_segment(6))
        self.assertEqual(path.stat().st_size, 56)
        stream = io.BytesIO()
        removed = archive.fetch(LETTER._replace(version="2"), Content.first_file(), stream, seen.append)
        self.assertEqual((stream.getvalue(), removed.exists()), (path.read_bytes(), False))
        self.assertGreater(seen[-1].received, 0)
        self.assertRaises(Refused, archive.fetch, LETTER, Content.first_file("nix"))
        with tempfile.TemporaryDirectory() as directory:
            file = Path(directory, "Größe.bin")
            file.write_bytes(content)
            archive.upload(file)
            self.assertRaises(BadArgument, archive.upload, Path(directory, "none"))
        self.assertEqual(archive.transfer("Größe.bin", len(content)).read_bytes(), content)
        archive.upload(io.BytesIO(content * 2), "stream.bin", seen.append)
        stream = io.BytesIO()
        self.assertFalse(archive.transfer("stream.bin", 2 * len(content), stream).exists())
        self.assertEqual(stream.getvalue(), content * 2)
        for name in ("a/b", "..", "a\0", ""):
            self.assertRaises(BadArgument, archive.upload, io.BytesIO(b""), name)
        for options in ({}, {"sort": "Date", "descending": True}):
            self.assertEqual(archive.print_hits("copper", "Titel", **options).read_bytes()[:5], b"%PDF-")
        self.assertIsNone(archive.print_hits("copper", "Titel", rights=""))
        archive.test_blob_directory()

    def test_a_file_of_another_length_is_an_error(self):
        class Answer:
            result, strParamStatus, strFileName, lngFileLen = 1, "", "file.txt", "5"
        (self.server.blobs / "file.txt").write_bytes(b"six by")
        for name, reason in (("file.txt", "6 bytes instead of 5"), ("none", "is not there")):
            Answer.strFileName = name
            with self.subTest(name), self.assertRaisesRegex(Error, reason):
                self.archive._fetched(lambda: Answer, None, None)

    def test_transport_orders(self):
        orders = self.archive.orders(max=2)
        self.assertEqual([order.id for order in orders], ["FA-0001", "FA-0002"])
        self.archive.set_order_status("FA-0001", "loaded")
        self.assertEqual(self.archive.orders("FA-0001")[0].status, "loaded")
        self.assertTrue(self.archive.fetch_orders(["FA-0001"]).is_file())

    def test_what_cannot_be_sent_is_refused_before_any_request(self):
        before = self.archive.last_request
        for call, reason in [(lambda: self.archive.search("a^,^b"), "separates the fields"),
                             (lambda: self.archive.search("a^,"), "separates the fields"),
                             (lambda: self.archive.search("ok Łódź"), "character 4 "),
                             (lambda: self.archive.search("a", max=-1), "0 or more"),
                             (lambda: self.archive.search(5), "must be a text"),
                             (lambda: self.archive.add_note(LETTER, "x" * 8001), "8000"),
                             (lambda: Archive(hosts="127.0.0.1,9"), "another thread"),
                             (lambda: Archive(timeout=0), "time-out"), (lambda: Archive(hosts=["a,1"]), "not list"), (lambda: self.archive.users, "no web user")]:
            with self.subTest(reason), self.assertRaisesRegex(BadArgument, reason):
                call()
        self.assertEqual(self.archive.last_request, before)
        same = {**self.server.settings, "hosts": self.server.hosts.replace(",", ",0")}
        with Archive(**same, session="second") as archive:
            self.assertNotIn("secret", repr(vars(archive)))

    def test_servers_are_shown_and_asked(self):
        self.assertIn("alive", self.archive.live())
        self.assertIn("alive", self.archive.direct("^LiveCheck^")[0])
        self.assertEqual([server.is_busy for server in self.archive.servers()], [False])
        settings = {**self.server.settings, "hosts": f"{self.server.hosts}|{unused_server()}"}
        checks = []
        thread = threading.Thread(target=lambda: checks.extend(Archive(**settings).health()))
        thread.start()
        thread.join()
        self.assertEqual([check.is_alive for check in checks], [True, False])
        self.assertIn("10061", checks[1].text)


ROWS = [r"^$(#Büro)\A^,^1^,^2^,^a^,^^,^€^", r"^$(#Büro)\A^,^^,^^,^^", r"^$(#)\^,^3^,^1^,^no caret at the end",
        r"^x#(M)\B^,^4^,^1^,^,^,^a,b^", r"^$(#M)\A\B)\C^,^5^,^1^,^^^,^x^"]


class RowsTest(ThreadedTest):
    def search(self, rows):
        server = self.started(CannedServer, [str(len(rows)), "", "0", "^0^", "^R^,^D^,^V^,^Title^,^Größe^", *rows])
        archive = Archive(hosts=server.hosts)
        self.addCleanup(archive.close)
        return archive, archive.search("any")

    def test_a_hit_list_reads_rows_as_the_class_does(self):
        archive, hits = self.search(ROWS)
        self.assertEqual(hits.columns, ("Title", "Größe"))
        archive.query.TELOQueryArchiveInit("any", 9, 9, "", "")
        archive.query.TELOQueryArchiveNext()
        for hit in hits:
            row = archive.query.TELOQueryArchiveNext()
            self.assertEqual([*hit.document, hit.values], [*row[1:], fields(row.result)])
        self.assertEqual(hits[2].value("größe"), "")

    def test_a_malformed_row_is_an_error(self):
        for row in ("^$(#Mail^,^1^,^2^,^a^", "^)\\^,^1^,^2^,^a^", "^1^,^2^"):
            with self.subTest(row):
                hits = self.in_own_thread(lambda row=row: self.search([ROWS[0], row])[1].read())
                self.assertEqual(hits[0].channel, "Büro")
                self.assertRaisesRegex(Error, "malformed", list, hits)


class FailuresTest(ThreadedTest):
    def failure(self, kind, **settings):
        with Archive(**{**self.server.settings, "timeout": 1, **settings}) as archive:
            with self.assertRaises(kind) as raised:
                archive.channels()
        return raised.exception

    def test_a_time_out_tells_what_was_tried(self):
        silent = self.started(SilentServer)
        error = self.failure(TimedOut, hosts=silent.hosts)
        self.assertEqual(([attempt.server for attempt in error.attempts], error.attempts[0].error, error.was_sent),
                         ([silent.hosts], "no answer", True))
        self.assertLess(error.elapsed.total_seconds(), 30)
        self.assertTrue(error.text)

    def test_a_server_that_cannot_be_reached(self):
        error = self.failure(ConnectionFailed, hosts=unused_server())
        self.assertRegex(error.attempts[0].error, "^10061 - ")
        self.assertFalse(error.was_sent)

    def test_a_host_is_told_of_each_request(self):
        seen = []
        with Archive(**self.server.settings) as archive:
            archive.on_request(seen.append)
            archive.search("copper")
            self.assertRaises(Refused, archive.document, LETTER._replace(id="999999"))
            archive.on_request(None)
            archive.live()
        self.assertEqual([report.was_sent for report in seen], [True, True])

    def test_no_free_server(self):
        self.assertEqual(self.failure(AllServersBusy, hosts="").attempts, ())

    def test_a_server_that_refuses(self):
        error = self.failure(Refused, password="wrong")
        self.assertEqual((error.attempts[0].error, error.was_sent), ("", True))
        self.assertEqual(str(error), error.text)

    def test_another_thread_cancels_and_the_archive_goes_on(self):
        silent = self.started(SilentServer)
        archive = Archive(hosts=silent.hosts, timeout=60)
        threading.Timer(0.2, archive.cancel).start()
        self.assertRaises(Cancelled, archive.channels)
        self.assertRaises(Cancelled, archive.channels)
        archive.resume()
        threading.Timer(0.2, archive.cancel).start()
        with self.assertRaises(Cancelled) as raised:
            archive.live()
        self.assertLess(raised.exception.elapsed.total_seconds(), 30)
        archive.resume()
        threading.Timer(0.2, archive.cancel).start()
        self.assertEqual([(check.is_alive, "cancelled" in check.text) for check in archive.health()], [(False, True)])

    def test_settings_that_do_not_fit(self):
        for settings, kind in [({"hosts": "127.0.0.1,many"}, BadArgument), ({"database": "Driver={No such driver}"},
                                                                          DatabaseFailed)]:
            with self.subTest(settings), self.assertRaises(kind):
                Archive(**settings)


class TextTest(unittest.TestCase):
    def test_parts_of_texts(self):
        note = note_of("Anna, Berlin,15.11.2026 20:31:07,a, b\r\nc")
        for have, want in [
                (fields("^a^,^^,^b^"), ["a", "", "b"]), (fields("a"), ["a"]), (fields(""), []), (fields("^"), [""]),
                (date_of("31.02.2026"), None), (date_of("15.11.2026 20:31"), datetime(2026, 11, 15, 20, 31)),
                ((note.author, note.time, note.text), ("Anna, Berlin", datetime(2026, 11, 15, 20, 31, 7), "a, b\nc")),
                (note_of("no header, 1.1.26").text, "no header, 1.1.26"),
                (with_network_line_ends("a\nb\r\nc\r\n\n"), "a\r\nb\r\nc"),
                (without_marks("\x01a\x02 €\x01\x02 \x01\x01bc\x02d\x02"), MarkedText("a € bcd", (Mark(0, 1), Mark(4, 2)))),
                (["*" * marked + text for text, marked in MarkedText("ä€ price", (Mark(1, 1), Mark(3, 5))).pieces()],
                 ["ä", "*€", " ", "*price"]),
                (content_text(FieldContent(1, 2, "@a\r\n@b\n@c@")), " @a\r\n @b\n @c@"),
                (len(HitList()), 0), (number_of("9" * 5000), 0), (number_of(" 1,6 "), 1)]:
            self.assertEqual(have, want)
        for title in ("Rohre,1:11", "Rohre,x, 1 : 11", "a,1:2,b"):
            self.assertRaises(BadArgument, title_text, title)
        self.assertEqual(title_text("Rohre, 1:1:1, a"), "Rohre, 1:1:1, a")


if __name__ == "__main__":
    unittest.main()
