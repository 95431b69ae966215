-- The web user database. One text for SQLite, PostgreSQL and SQL Server.
-- Groups are users; a user has the rights of his own and of the groups he is a member of, one level deep.
-- Names of users are not unique for the database: the component may create several users of one name.

CREATE TABLE Users (
  UserID INTEGER NOT NULL PRIMARY KEY,
  UserName VARCHAR(255) NOT NULL,
  Passwd VARCHAR(1000),
  TELOUser VARCHAR(255),
  TELOPasswd VARCHAR(1000),
  ChangePasswd INTEGER
);
CREATE INDEX UsersByName ON Users (UserName);

CREATE TABLE UserGroups (
  UserID INTEGER NOT NULL REFERENCES Users (UserID),
  GroupID INTEGER NOT NULL REFERENCES Users (UserID),
  PRIMARY KEY (UserID, GroupID)
);
CREATE INDEX UserGroupsByGroup ON UserGroups (GroupID);

CREATE TABLE UserRights (
  UserID INTEGER NOT NULL REFERENCES Users (UserID),
  RightID INTEGER NOT NULL,
  PRIMARY KEY (UserID, RightID)
);

CREATE TABLE UserEditRights (
  UserID INTEGER NOT NULL REFERENCES Users (UserID),
  Archive VARCHAR(255) NOT NULL,
  New INTEGER NOT NULL,
  Edit INTEGER NOT NULL,
  Del INTEGER NOT NULL,
  PRIMARY KEY (UserID, Archive)
);

CREATE TABLE UserArchives (
  UserID INTEGER NOT NULL REFERENCES Users (UserID),
  Archive VARCHAR(255) NOT NULL,
  PRIMARY KEY (UserID, Archive)
);

CREATE TABLE UserChannels (
  UserID INTEGER NOT NULL REFERENCES Users (UserID),
  Channel VARCHAR(255) NOT NULL,
  PRIMARY KEY (UserID, Channel)
);

-- A channel or archive '' stands for all of them in DocRights, SearchRightArchives and OutlinerArchives. The component
-- also takes Null, which tables made by others may hold; two of these keys cannot, so no table here allows it.
CREATE TABLE DocRights (
  DocRightID INTEGER NOT NULL PRIMARY KEY,
  Channel VARCHAR(255) NOT NULL,
  Archive VARCHAR(255) NOT NULL
);

CREATE TABLE UserDocRights (
  UserID INTEGER NOT NULL REFERENCES Users (UserID),
  DocRightID INTEGER NOT NULL REFERENCES DocRights (DocRightID),
  PRIMARY KEY (UserID, DocRightID)
);

CREATE TABLE DocRightFields (
  DocRightID INTEGER NOT NULL REFERENCES DocRights (DocRightID),
  FieldID INTEGER NOT NULL,
  Operator VARCHAR(20) NOT NULL,
  Val VARCHAR(255) NOT NULL,
  Type VARCHAR(20) NOT NULL,
  Grade INTEGER NOT NULL
);
CREATE INDEX DocRightFieldsByRight ON DocRightFields (DocRightID, Grade);

CREATE TABLE SearchRights (
  SearchRightID INTEGER NOT NULL PRIMARY KEY
);

CREATE TABLE UserSearchRights (
  UserID INTEGER NOT NULL REFERENCES Users (UserID),
  SearchRightID INTEGER NOT NULL REFERENCES SearchRights (SearchRightID),
  PRIMARY KEY (UserID, SearchRightID)
);

CREATE TABLE SearchRightArchives (
  SearchRightID INTEGER NOT NULL REFERENCES SearchRights (SearchRightID),
  Channel VARCHAR(255) NOT NULL,
  Archive VARCHAR(255) NOT NULL,
  PRIMARY KEY (SearchRightID, Channel, Archive)
);

CREATE TABLE SearchRightFields (
  SearchRightID INTEGER NOT NULL REFERENCES SearchRights (SearchRightID),
  FieldID INTEGER NOT NULL,
  Val VARCHAR(255) NOT NULL,
  HideField INTEGER NOT NULL,
  NoMatchcode INTEGER NOT NULL
);
CREATE INDEX SearchRightFieldsByRight ON SearchRightFields (SearchRightID, FieldID);

CREATE TABLE Outliner (
  ID INTEGER NOT NULL PRIMARY KEY,
  DisplayName VARCHAR(255) NOT NULL
);

CREATE TABLE OutlinerArchives (
  OutlinerID INTEGER NOT NULL REFERENCES Outliner (ID),
  Channel VARCHAR(255) NOT NULL,
  Archive VARCHAR(255) NOT NULL,
  PRIMARY KEY (OutlinerID, Channel, Archive)
);
CREATE INDEX OutlinerArchivesByArchive ON OutlinerArchives (Channel, Archive);

CREATE TABLE OutlinerNodes (
  OutlinerID INTEGER NOT NULL REFERENCES Outliner (ID),
  NodeLevel INTEGER NOT NULL,
  FieldID INTEGER NOT NULL,
  Description VARCHAR(255) NOT NULL,
  DataType VARCHAR(20) NOT NULL,
  Search VARCHAR(255) NOT NULL,
  PRIMARY KEY (OutlinerID, NodeLevel)
);

CREATE TABLE OutlinerContent (
  ID INTEGER NOT NULL PRIMARY KEY,
  OutlinerID INTEGER NOT NULL REFERENCES Outliner (ID),
  NodeLevel INTEGER NOT NULL,
  ParentID INTEGER REFERENCES OutlinerContent (ID),
  Content VARCHAR(255) NOT NULL,
  Expand INTEGER NOT NULL
);
CREATE INDEX OutlinerContentByParent ON OutlinerContent (OutlinerID, ParentID);
