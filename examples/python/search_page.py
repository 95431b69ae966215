#!/usr/bin/env python3
"""search_page.py [PORT] - a search page as a WSGI application: a form, the hit list, and a document with the hits marked.

The environment gives OXAQRY_REMOTE_HOSTS, OXAQRY_USER and OXAQRY_PASSWORD. The server of the standard library that runs
it here answers one visitor at a time; any other WSGI server, with any number of threads, takes the same application."""
from __future__ import annotations

import os
import sys
from html import escape
from typing import TYPE_CHECKING, Iterable, List
from urllib.parse import parse_qs, urlencode
from wsgiref.simple_server import make_server

from oxaqrycln import Archive, ArchivePool, BadArgument, DocumentName, Error, MarkedText

if TYPE_CHECKING:
    from _typeshed.wsgi import StartResponse, WSGIEnvironment

POOL = ArchivePool(hosts=os.environ.get("OXAQRY_REMOTE_HOSTS", ""), user=os.environ.get("OXAQRY_USER", ""),
                   password=os.environ.get("OXAQRY_PASSWORD", ""))


def form(query: str) -> str:
    return f'<form><input name="q" value="{escape(query)}" autofocus> <button>Search</button></form>'


def hit_list(archive: Archive, query: str) -> str:
    hits = archive.search(query)
    titles = "".join(f"<th>{escape(title)}</th>" for title in hits.columns)
    rows = []
    for hit in hits:
        link = "?" + urlencode({"q": query, "doc": list(hit.document)}, doseq=True)
        cells = "".join(f"<td>{escape(value)}</td>" for value in hit.values)
        rows.append(f'<tr><td><a href="{escape(link)}">{escape(hit.id)}</a></td>{cells}</tr>')
    return f"<p>{hits.total} hits</p><table><tr><th>Document</th>{titles}</tr>{''.join(rows)}</table>"


def marked(text: MarkedText) -> str:
    pieces = (f"<mark>{escape(piece.text)}</mark>" if piece.is_marked else escape(piece.text) for piece in text.pieces())
    return "".join(pieces).replace("\n", "<br>")


def document(archive: Archive, name: DocumentName, query: str) -> str:
    found = archive.document(name, query)
    segments = (f"<h2>{escape(segment.name)}</h2><p>{marked(segment.text)}</p>" for segment in found.segments)
    notes = (f"<p>{escape(note.author)} {note.time or ''}: {escape(note.text)}</p>" for note in found.notes)
    return f"<h1>{escape(found.title)}</h1>{''.join(segments)}{''.join(notes)}"


def application(environ: WSGIEnvironment, start_response: StartResponse) -> Iterable[bytes]:
    given = parse_qs(environ.get("QUERY_STRING", ""), keep_blank_values=True)
    query, name = given.get("q", [""])[0], given.get("doc", [])
    status, parts = "200 OK", [form(query)]
    try:
        if len(name) == 4:
            parts.append(document(POOL.archive(), DocumentName(*name), query))
        elif query:
            parts.append(hit_list(POOL.archive(), query))
    except Error as error:
        status = "400 Bad Request" if isinstance(error, BadArgument) else "502 Bad Gateway"
        parts.append(f"<p>{escape(error.text)}</p>")
    return page(status, parts, start_response)


def page(status: str, parts: List[str], start_response: StartResponse) -> Iterable[bytes]:
    body = "<!DOCTYPE html><html lang=en><meta charset=utf-8><title>Archive</title>" + "".join(parts)
    start_response(status, [("Content-Type", "text/html; charset=utf-8")])
    return [body.encode("utf-8")]


if __name__ == "__main__":
    with make_server("127.0.0.1", int(sys.argv[1]) if len(sys.argv) > 1 else 8080, application) as server:
        print(f"http://127.0.0.1:{server.server_port}/", flush=True)
        server.serve_forever()
