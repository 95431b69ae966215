"""The examples against the development archive server."""
import csv
import io
import os
import runpy
import unittest
from unittest import mock
from urllib.parse import urlencode
from wsgiref.util import setup_testing_defaults

from support import ROOT, ThreadedTest, run_program, unused_server

EXAMPLES = ROOT / "examples/python"


class ExamplesTest(ThreadedTest):
    def environment(self, hosts):
        return {"OXAQRY_REMOTE_HOSTS": hosts, "OXAQRY_USER": "webuser", "OXAQRY_PASSWORD": "secret"}

    def page(self, hosts, **query):
        """The status and the text of the search page."""
        with mock.patch.dict(os.environ, self.environment(hosts)):
            page = runpy.run_path(str(EXAMPLES / "search_page.py"))
        environ, seen = {"QUERY_STRING": urlencode(query, doseq=True)}, []
        setup_testing_defaults(environ)
        body = b"".join(page["application"](environ, lambda status, headers: seen.append(status)))
        return seen[0], body.decode("utf-8")

    def test_the_page_shows_hits_documents_and_failures(self):
        hosts = self.server.hosts
        self.assertEqual(self.page(hosts)[0], "200 OK")
        _, text = self.page(hosts, q="copper")
        self.assertIn("<p>21 hits</p>", text)
        self.assertIn("Sören Ødebæk", text)
        _, text = self.page(hosts, q="price", doc=["Mail", "Inbox", "1262", ""])
        self.assertIn("<mark>price</mark>", text)
        status, text = self.page(hosts, q="<b>^,^")
        self.assertTrue(status.startswith("400") and "&lt;b&gt;" in text and "<b>" not in text, text)
        self.assertTrue(self.page(hosts, q='"unclosed')[0].startswith("502"))

    def test_the_export_writes_every_hit_or_tells_what_was_tried(self):
        program = (EXAMPLES / "export_hits.py").read_text(encoding="utf-8")
        run = run_program(program, "copper", "--sort", "Title", environment=self.environment(self.server.hosts))
        rows = list(csv.reader(io.StringIO(run.stdout)))
        titles = [row[rows[0].index("Title")] for row in rows[1:]]
        self.assertEqual((len(titles), titles, run.stderr), (21, sorted(titles), ""))
        run = run_program(program, "copper", environment=self.environment(unused_server()))
        self.assertIn("10061", run.stderr)
        self.assertEqual(run.returncode, 1)


if __name__ == "__main__":
    unittest.main()
