-- Example definitions for a web user database that has the tables of schema.sql, all empty: document rights, search
-- rights and outliners. They name channels, archives and fields of the development server's archive. No users: give the
-- definitions to users or groups. All text is UTF-8.

-- 1: in Finance/Invoices the amounts below 5000. 2: everywhere what is not of one customer.
INSERT INTO DocRights (DocRightID, Channel, Archive) VALUES (1, 'Finance', 'Invoices');
INSERT INTO DocRights (DocRightID, Channel, Archive) VALUES (2, '', '');
INSERT INTO DocRightFields (DocRightID, FieldID, Operator, Val, Type, Grade) VALUES (1, 13, '=', 'Invoice', 'TXT', 1);
INSERT INTO DocRightFields (DocRightID, FieldID, Operator, Val, Type, Grade) VALUES (1, 15, '<', '5000', 'NUM', 2);
INSERT INTO DocRightFields (DocRightID, FieldID, Operator, Val, Type, Grade)
  VALUES (2, 12, '<>', 'Nordlicht Optik', 'TXT', 1);

-- 1: in all archives of Finance the author has no matchcode and the amount is hidden. 2: everywhere searches are for one
-- customer.
INSERT INTO SearchRights (SearchRightID) VALUES (1);
INSERT INTO SearchRights (SearchRightID) VALUES (2);
INSERT INTO SearchRightArchives (SearchRightID, Channel, Archive) VALUES (1, 'Finance', '');
INSERT INTO SearchRightArchives (SearchRightID, Channel, Archive) VALUES (2, '', '');
INSERT INTO SearchRightFields (SearchRightID, FieldID, Val, HideField, NoMatchcode) VALUES (1, 11, '', 0, 1);
INSERT INTO SearchRightFields (SearchRightID, FieldID, Val, HideField, NoMatchcode) VALUES (1, 15, '', 1, 1);
INSERT INTO SearchRightFields (SearchRightID, FieldID, Val, HideField, NoMatchcode)
  VALUES (2, 12, 'Papiermühle Ährental', 0, 0);

-- 1: customers, and below each the years, for all archives of Finance.
INSERT INTO Outliner (ID, DisplayName) VALUES (1, 'Customers by year');
INSERT INTO OutlinerArchives (OutlinerID, Channel, Archive) VALUES (1, 'Finance', '');
INSERT INTO OutlinerNodes (OutlinerID, NodeLevel, FieldID, Description, DataType, Search)
  VALUES (1, 1, 12, 'Customer', 'TXT', '1');
INSERT INTO OutlinerNodes (OutlinerID, NodeLevel, FieldID, Description, DataType, Search)
  VALUES (1, 2, 14, 'Year', 'NUM', '1');
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand)
  VALUES (1, 1, 1, NULL, 'Nordlicht Optik', 1);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (2, 1, 2, 1, '2025', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (3, 1, 2, 1, '2026', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand)
  VALUES (4, 1, 1, NULL, 'Bäckerei Größling', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (5, 1, 2, 4, '2025', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (6, 1, 2, 4, '2026', 0);

-- 2: types of documents under headings that are not searched for, for all archives.
INSERT INTO Outliner (ID, DisplayName) VALUES (2, 'Types of documents');
INSERT INTO OutlinerArchives (OutlinerID, Channel, Archive) VALUES (2, '', '');
INSERT INTO OutlinerNodes (OutlinerID, NodeLevel, FieldID, Description, DataType, Search)
  VALUES (2, 1, 13, 'Heading', 'TXT', '0');
INSERT INTO OutlinerNodes (OutlinerID, NodeLevel, FieldID, Description, DataType, Search)
  VALUES (2, 2, 13, 'Type', 'TXT', '1');
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand)
  VALUES (7, 2, 1, NULL, 'Correspondence', 1);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (8, 2, 2, 7, 'Letter', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (9, 2, 2, 7, 'Fax', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand)
  VALUES (10, 2, 1, NULL, 'Accounts', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (11, 2, 2, 10, 'Invoice', 0);
INSERT INTO OutlinerContent (ID, OutlinerID, NodeLevel, ParentID, Content, Expand) VALUES (12, 2, 2, 10, 'Order', 0);
