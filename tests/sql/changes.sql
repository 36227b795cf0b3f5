-- Definitions, and changes that are whole or not at all.
CREATE TABLE Item (ItemID AutoInc PRIMARY KEY, Code VARCHAR(5) NOT NULL UNIQUE, Price NUMERIC(10,2), Weight REAL, Made TIMESTAMP, Notes TEXT, Kind SmallInt);
CREATE TABLE IF NOT EXISTS Item (Other Integer);
CREATE TABLE Item (Other Integer)
! 9004 1:14 Item

INSERT INTO Item (Code, Price) VALUES ('A', 1.5), ('B', 2), ('C', null)
+ 3

-- Given key values raise the counter.
INSERT INTO Item (ItemID, Code) VALUES (10, 'J');
INSERT INTO Item (Code, Kind) VALUES ('K', 4);
SELECT * FROM Item WHERE ItemID > 3
# ItemID|Code|Price|Weight|Made|Notes|Kind
= 10|'J'|null|null|null|null|null
= 11|'K'|null|null|null|null|4

-- The second row is refused, and the first is not there.
INSERT INTO Item (Code) VALUES ('D'), ('A')
! 9729 1:40 Code

INSERT INTO Item (Code) VALUES ('D'), (null)
! 9007 1:40 Code

INSERT INTO Item (Kind) VALUES (1), (2)
! 9007 1:33 Code

INSERT INTO Item (Kind, Code) SELECT Kind, Code || 'much too long' FROM Item
! 9006 1:44 too long

INSERT INTO Item (Code) VALUES ('D'), ('toolong')
! 9006 1:40 too long

INSERT INTO Item (Code, Kind) VALUES ('D', 1), ('E', 40000)
! 9006 1:54 out of range

INSERT INTO Item (Code, Kind) VALUES ('D')
! 9020 1:39 1 values for 2 fields

INSERT INTO Item VALUES (1, 'D')
! 9020 1:26 2 values for 7 fields

INSERT INTO Item (Code, Colour) VALUES ('D', 1)
! 9002 1:25 Colour

INSERT INTO Item (Code, Kind) VALUES ('D', 'x')
! 9006 1:44

INSERT INTO Item (Code, Kind) VALUES ('D', true)
! 9021 1:44

SELECT COUNT(*) FROM Item
= 5

UPDATE Item SET ItemID = ItemID + 5, Kind = Kind * 20000 WHERE Kind = 4
! 9006 1:45 out of range

UPDATE Item SET Notes = 'both' || Code, Code = Code || Code || 'long'
! 9006 1:48 too long

UPDATE Item SET Price = Price * 2, Notes = 'both' WHERE Price >= 1.5
+ 2

SELECT Code, Price, Notes FROM Item WHERE Notes IS NOT NULL
= 'A'|$3|'both'
= 'B'|$4|'both'

UPDATE Item SET Kind = 1, Kind = 2
! 9020 1:27 twice

UPDATE Item SET Code = 'X'
! 9729 1:8 Code

UPDATE Item SET Code = 'much too long' WHERE ItemID = 1
! 9006 1:24 too long

UPDATE Item SET Code = null WHERE ItemID = 1
! 9007 1:24 Code

-- Each value is worked out from the row as it was before the statement.
UPDATE Item SET ItemID = Kind, Kind = ItemID WHERE Code = 'K';
UPDATE Item SET ItemID = ItemID + 100
+ 5

SELECT ItemID, Code FROM Item
= 101|'A'
= 102|'B'
= 103|'C'
= 110|'J'
= 104|'K'

UPDATE Item I SET I.Kind = (SELECT COUNT(*) FROM Item O WHERE O.ItemID < I.ItemID) WHERE I.Code IN ('B', 'K')
+ 2

SELECT Code, Kind FROM Item WHERE Kind IS NOT NULL
= 'B'|1
= 'K'|3

DELETE FROM Item WHERE ItemID NOT IN (SELECT MIN(ItemID) FROM Item UNION SELECT MAX(ItemID) FROM Item)
+ 3

-- Quoted texts in the list of a SELECT become what the fields hold, as in VALUES; texts of a table do not.
CREATE TABLE Event (D Date, T Time, N Integer, S VARCHAR(10));
INSERT INTO Event SELECT '2012-3-1', '9:05', '7', '2012-3-1' UNION ALL SELECT '2012-3-2', null, 8, null
+ 2

SELECT * FROM Event
= 2012-03-01|09:05:00|7|'2012-3-1'
= 2012-03-02|null|8|null

INSERT INTO Event (D) SELECT 'soon' FROM Event
! 9006 1:30 soon

INSERT INTO Event (D) SELECT S FROM Event
! 9021 1:30 a text

DROP TABLE Event;

-- A copy has the rows and no indexes; a name that is there is replaced.
SELECT Code, Price INTO "\Memory\Copy" FROM Item
+ 2

SELECT * INTO "\Memory\Copy" FROM Item
+ 2

INSERT INTO "\Memory\Copy" (Code) SELECT Code FROM Item WHERE Code = 'A'
+ 1

SELECT C.Code, C.Price, I.Price FROM "\memory\COPY" C INNER JOIN Item I ON I.Code = C.Code ORDER BY C.Code, C.Price
# Code|Price|Price_1
= 'A'|null|$3
= 'A'|$3|$3
= 'J'|null|null

UPDATE "\Memory\Copy" SET "\Memory\Copy".Price = 9 WHERE Code = 'A'
+ 2

SELECT SUM("\Memory\Copy".Price) FROM "\Memory\Copy"
= $18

DELETE FROM "\Memory\Copy"
+ 3

DROP TABLE "\Memory\Copy";
DROP TABLE IF EXISTS "\Memory\Copy";
DROP TABLE "\Memory\Copy"
! 9001 1:12 Copy

SELECT * INTO Copied FROM Item;
CREATE UNIQUE NOCASE INDEX ByCode ON Copied (Code);
INSERT INTO Copied (ItemID, Code) VALUES (50, 'a')
! 9729 1:43 Code

CREATE INDEX ByCode ON Copied (Price)
! 9005 1:1 already

CREATE INDEX ByNone ON Copied (None1)
! 9002 1:32 None1

DROP INDEX ByCode ON Copied;
DROP INDEX ByCode ON Copied
! 9003 1:1 ByCode

INSERT INTO Copied (ItemID, Code) VALUES (50, 'a');
CREATE UNIQUE NOCASE INDEX ByCode ON Copied (Code)
! 9729 1:38 Code

ALTER TABLE Copied ADD Extra Integer, DROP COLUMN Notes, MODIFY COLUMN Kind Integer;
SELECT * FROM Copied
# ItemID|Code|Price|Weight|Made|Kind|Extra
= 101|'A'|$3|null|null|null|null
= 110|'J'|null|null|null|null|null
= 50|'a'|null|null|null|null|null

ALTER TABLE Copied MODIFY COLUMN Code Integer
! 9006 1:13

ALTER TABLE Copied DROP COLUMN None1
! 9002 1:32 None1

CREATE TABLE Bad (a Integer, A Integer)
! 9005 1:30 twice

CREATE TABLE Bad (a Integer, PRIMARY KEY (b))
! 9002 1:14 b

SELECT * INTO "\No\Such" FROM Item
! 9005 1:15 no name

CREATE TABLE Bad (a Wonder)
! 9020 1:21 Wonder

CREATE TABLE Bad (a VARCHAR(300))
! 9020 1:29 255

SELECT Nothing FROM Item
! 9002 1:8 Nothing

SELECT I.Nothing FROM Item I
! 9002 1:8 Nothing

SELECT X.Code FROM Item I
! 9002 1:8 X

SELECT * FROM None1
! 9001 1:15 None1

SELECT Code FROM Item
WHERE Code = 'A' ANDD Kind = 1
! 9020 2:18 ANDD

SELECT Code FROM Item WHERE (Kind = 1
! 9020 1:38

SELECT Code FROM Item WHERE Code = 'A
! 9020 1:36

SELECT * FROM Item ORDER BY 9
! 9020 1:29

SELECT Code FROM Item WHERE SUM(Kind) > 1
! 9020 1:29

SELECT Code FROM Item UNION SELECT Code, Kind FROM Item
! 9020 1:8 number of columns

-- An empty memo is not null, here and in results whose texts have no known size.
UPDATE Item SET Notes = '' WHERE Code = 'A'
+ 1

SELECT Code, Notes, Notes = '', Notes IS NULL, COALESCE(Notes, 'none'), Notes || '' AS Joined INTO "\Memory\Texts" FROM Item ORDER BY Notes DESC;
SELECT * FROM "\Memory\Texts" ORDER BY Joined
= 'J'|null|false|true|'none'|null
= 'A'|''|true|false|''|''

UPDATE Item SET Notes = null
+ 2

SELECT COUNT(Notes) FROM Item
= 0

DELETE FROM Item
+ 2
