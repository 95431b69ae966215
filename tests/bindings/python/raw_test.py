"""The raw level: members, values and lists. The scenario calls every method; see tests/scenario."""
import gc
import inspect
import sys
import threading
import unittest
from datetime import datetime, timezone

import support
from support import ROOT, ThreadedTest

sys.path.insert(0, str(ROOT / "automation"))
import describe_interface  # noqa: E402

from oxaqrycln import BadArgument, Error, WrongThread, raw  # noqa: E402


class MembersTest(unittest.TestCase):
    def test_every_member_of_the_description_is_there_with_its_documentation_and_outputs(self):
        for member in describe_interface.load().members():
            with self.subTest(member.name):
                found = inspect.getattr_static(raw.Query, member.name)
                self.assertEqual(found.__doc__, "\n\n".join(member.documentation))
                if member.kind == "method":
                    self.assertEqual([each.name for each in found.method.parameters],
                                     [each.name for each in member.parameters])
                outputs = [each.name for each in member.parameters if each.kind in ("optional out", "in-out")]
                if outputs:
                    self.assertEqual(list(getattr(raw, member.name + "Result")._fields), ["result", *outputs])

    def test_wrong_arguments_are_refused_as_by_any_function(self):
        query = raw.Query()
        for arguments, names, reason in [((), {}, "needs the argument strText"), ((1, 2), {}, "takes 1 arguments"),
                                         (("a",), {"strTxt": "b"}, "no further argument strTxt"),
                                         (([],), {}, "type list")]:
            with self.subTest(reason), self.assertRaisesRegex(TypeError, reason):
                query.Encode(*arguments, **names)
        self.assertEqual(query.Encode(strText="a"), query.Encode("a"))
        with self.assertRaises(AttributeError):
            query.RemoteHosts
        with self.assertRaises(AttributeError):
            query.strTeloUser = "a"
        with self.assertRaisesRegex(TypeError, "no output strNone"):
            query.fetch_rows("TELOGetChannelsNext", ["strNone"], max=1)
        for most in (-1, 1 << 31):
            self.assertRaises(BadArgument, query.fetch_rows, "TELOGetChannelsNext", max=most)


class ValuesTest(unittest.TestCase):
    def test_values_come_back_as_they_were_given(self):
        query = raw.Query()
        every_byte = "".join(map(chr, range(128))) + "€‚ƒ„…†‡ˆ‰Š‹Œ\u008dŽ\u008f\u0090‘’“”•–—˜™š›œ\u009džŸ ÿ"
        for text in ["", every_byte, "x" * (1 << 20)]:
            query.strUserName = text
            self.assertEqual(query.strUserName, text)
        moment = datetime(2026, 11, 15, 20, 31, 7)
        query.datUserLoginTime = moment.astimezone(timezone.utc)
        self.assertEqual(query.datUserLoginTime, moment)
        for value in [None, True, raw.Integer(-5), raw.Byte(255), -(1 << 31), 1.5, moment, b"\0\xff", raw.NULL, "ß"]:
            with self.subTest(value):  # an output that is not written keeps its start value
                after = query.TELOGetChannelsNext(strChannelDescription=value).strChannelDescription
                self.assertEqual((type(after), after), (type(value), value))
        self.assertIsNone(query.TELOGetChannelsNext(raw.LEFT_OUT).strChannelDescription)

    def test_what_has_no_place_is_refused_before_anything_changes(self):
        query = raw.Query()
        query.strUserName = "before"
        for value, reason in [("ok Łódź", "character 4 "), ("\ud800", "character 1 "), (1 << 31, "32 bits"),
                              (raw.Byte(256), "0 to 255"), (datetime(1, 1, 1), "years 100")]:
            with self.subTest(value), self.assertRaisesRegex(BadArgument, reason):
                query.strUserName = value
        with self.assertRaises(BadArgument):
            query.lngRequestTimeout = raw.NULL
        self.assertEqual(query.strUserName, "before")


class QueryTest(ThreadedTest):
    def query(self):
        query = raw.Query()
        query.strTELOUser, query.strTELOPwd, query.lngRequestTimeout = "webuser", "secret", 20
        query.RemoteHosts = self.server.hosts
        self.assertTrue(query.Init(False))
        return query

    def test_a_list_in_one_crossing_is_the_list_row_by_row(self):
        query = self.query()
        count = query.TELOQueryArchiveInit("copper", 9, 1000, "", "").result
        one_by_one = [query.TELOQueryArchiveNext() for _ in range(count)]
        query.TELOQueryArchiveInit("copper", 9, 1000, "", "")
        rows = query.fetch_rows("TELOQueryArchiveNext", ["strChannel", "strArchive", "strDocID", "strVer"], max=count + 5)
        text, at = rows.text.decode("cp1252"), rows.positions()
        texts = [text[start:end] for start, end in zip(at, at[1:])]
        # The title row has none of the outputs.
        self.assertEqual(list(zip(*[iter(texts)] * 5)), [tuple(each or "" for each in row) for row in one_by_one])
        self.assertEqual((rows.row_count, rows.column_count, query.handled_error()[0]), (count, 5, 0))

    def test_a_query_serves_its_own_thread_only_and_is_freed_from_any(self):
        query = self.query()
        seen = []

        def use():
            for call in (query.HelloWorld, lambda: query.strUserName, query.outcome):
                try:
                    call()
                except WrongThread as error:
                    seen.append(error)
        thread = threading.Thread(target=use)
        thread.start()
        thread.join()
        self.assertEqual(len(seen), 3)
        self.assertEqual(query.HelloWorld(), "Hello World!")
        query.close()
        query.close()
        with self.assertRaisesRegex(Error, "closed"):
            query.HelloWorld()

    def test_a_query_in_a_cycle_is_collected_on_another_thread(self):
        for _ in range(20):
            query = self.query()
            cycle = [query]
            cycle.append(cycle)
            del query, cycle
        collector = threading.Thread(target=gc.collect)
        collector.start()
        collector.join()
        self.assertEqual(self.query().HelloWorld(), "Hello World!")
        self.assertEqual(sum(isinstance(each, raw.Query) for each in gc.get_objects()), 0)


if __name__ == "__main__":
    unittest.main()
