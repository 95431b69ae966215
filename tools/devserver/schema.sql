-- The tables of the development archive. All text is UTF-8.

CREATE TABLE channel (
  id          INTEGER PRIMARY KEY,
  name        TEXT NOT NULL UNIQUE COLLATE NOCASE,
  description TEXT NOT NULL
);

CREATE TABLE archive (
  id         INTEGER PRIMARY KEY,
  channel_id INTEGER NOT NULL REFERENCES channel (id),
  name       TEXT NOT NULL COLLATE NOCASE,
  comment    TEXT NOT NULL,
  can_create INTEGER NOT NULL,
  can_edit   INTEGER NOT NULL,
  can_delete INTEGER NOT NULL,
  can_index  INTEGER NOT NULL,
  scans      INTEGER NOT NULL,          -- 1: its hit lists offer a multi-page TIFF
  UNIQUE (channel_id, name)
);

-- A query format searches the columns named in fields (blanks between them), or all when fields is empty.
CREATE TABLE query_format (
  archive_id INTEGER NOT NULL REFERENCES archive (id),
  position   INTEGER NOT NULL,
  name       TEXT NOT NULL COLLATE NOCASE,
  fields     TEXT NOT NULL,
  PRIMARY KEY (archive_id, position)
);

CREATE TABLE field (
  id     INTEGER PRIMARY KEY,           -- the number that layouts and layout field IDs use
  name   TEXT NOT NULL UNIQUE,          -- the column of document, and the field of a query
  title  TEXT NOT NULL,
  flags  INTEGER NOT NULL               -- 0x400 a date, 0x200 a number
);

CREATE TABLE layout_column (
  layout_id TEXT NOT NULL,
  position  INTEGER NOT NULL,
  field_id  INTEGER NOT NULL REFERENCES field (id),
  PRIMARY KEY (layout_id, position)
);

CREATE TABLE document (
  id         INTEGER PRIMARY KEY,
  archive_id INTEGER NOT NULL REFERENCES archive (id),
  version    INTEGER NOT NULL,
  sort_date  TEXT NOT NULL,             -- yyyy-mm-dd
  title      TEXT NOT NULL,
  author     TEXT NOT NULL,
  customer   TEXT NOT NULL,
  type       TEXT NOT NULL,
  date       TEXT NOT NULL,             -- dd.mm.yyyy
  amount     TEXT NOT NULL,             -- 1234,50, or empty
  text       TEXT NOT NULL
);
CREATE INDEX document_archive ON document (archive_id);

CREATE VIRTUAL TABLE document_text USING fts5 (
  title, author, customer, type, date, amount, text,
  content = 'document', content_rowid = 'id', tokenize = 'unicode61 remove_diacritics 2'
);
