-- The clauses of SELECT over three small tables.
CREATE TABLE Cust (CustID Integer PRIMARY KEY, Name VARCHAR(20), Town VARCHAR(20), Limit1 Money, Suspended Boolean);
INSERT INTO Cust VALUES (1, 'Adams', 'Ulm', 100, false), (2, 'baker', 'Bonn', 50.5, true), (3, 'Clark', null, null, false), (4, 'Adams', 'Bonn', 0, null)
+ 4

CREATE TABLE Inv (InvID Integer PRIMARY KEY, CustID Integer, Day1 Date, Amount Money, Qty Double);
INSERT INTO Inv VALUES (10, 1, '2012-03-31', 12.5, 1.5), (11, 1, '2012-4-1', 7, 2), (12, 2, '2013-1-5', -3.25, 0.1), (13, null, null, null, null), (14, 9, '2012-12-31', 1000, 4)
+ 5

CREATE TABLE Pay (PayID AutoInc PRIMARY KEY, InvID Integer, Paid Money);
INSERT INTO Pay (InvID, Paid) VALUES (10, 5), (10, 2.5), (12, 1)
+ 3

SELECT * FROM Cust WHERE CustID = 2
# CustID|Name|Town|Limit1|Suspended
= 2|'baker'|'Bonn'|$50.5|true

-- Names in any case, aliases with and without AS, I.* among others.
select c.NAME, i.* from CUST C inner join inv as I on I.custid = c.CustID where I.amount > 0
# NAME|InvID|CustID|Day1|Amount|Qty
= 'Adams'|10|1|2012-03-31|$12.5|~1.5
= 'Adams'|11|1|2012-04-01|$7|~2

-- A left join keeps what has no partner; null equals null, also in a join.
SELECT I.InvID, C.Name FROM Inv I LEFT OUTER JOIN Cust C ON C.CustID = I.CustID
= 10|'Adams'
= 11|'Adams'
= 12|'baker'
= 13|null
= 14|null

SELECT A.Name, B.Name FROM Cust A INNER JOIN Cust B ON A.Limit1 = B.Limit1 WHERE A.CustID = 3
# Name|Name_1
= 'Clark'|'Clark'

SELECT C.Name, I.InvID, P.Paid FROM Cust C LEFT JOIN Inv I ON I.CustID = C.CustID LEFT JOIN Pay P ON P.InvID = I.InvID
= 'Adams'|10|$5
= 'Adams'|10|$2.5
= 'Adams'|11|null
= 'baker'|12|$1
= 'Clark'|null|null
= 'Adams'|null|null

-- Commas and CROSS JOIN give all pairs.
SELECT COUNT(*) FROM Cust, Inv
= 20

SELECT COUNT(*) FROM Cust CROSS JOIN Inv WHERE Inv.InvID < 12
= 8

SELECT C.Name FROM Cust C, Inv I WHERE I.CustID = C.CustID AND I.InvID = 12
= 'baker'

-- Where nothing orders, rows come as they were entered, whatever index serves.
SELECT InvID FROM Inv WHERE InvID IN (14, 10, 12)
= 10
= 12
= 14

CREATE INDEX ByAmount ON Inv (Amount DESC)

SELECT InvID FROM Inv WHERE Amount >= 7
= 10
= 11
= 14

SELECT InvID FROM Inv ORDER BY Amount DESC TOP 2
= 14
= 10

-- Null comes first, and last when descending.
SELECT InvID FROM Inv ORDER BY Amount
= 13
= 12
= 11
= 10
= 14

SELECT InvID, Amount AS A FROM Inv ORDER BY 2 DESC, 1 TOP 3
= 14|$1000
= 10|$12.5
= 11|$7

SELECT Name AS N FROM Cust ORDER BY N, CustID DESC
= 'Adams'
= 'Adams'
= 'Clark'
= 'baker'

SELECT CustID FROM Cust ORDER BY Name, CustID DESC
= 4
= 1
= 3
= 2

SELECT CustID FROM Cust ORDER BY Name NOCASE
= 1
= 4
= 2
= 3

SELECT DISTINCT Name FROM Cust
= 'Adams'
= 'baker'
= 'Clark'

SELECT DISTINCT Town FROM Cust ORDER BY Town
= null
= 'Bonn'
= 'Ulm'

-- Groups stand in the order of their first rows; a field that is not grouped is that of the first row.
SELECT Town, Name, COUNT(*), SUM(Limit1) FROM Cust GROUP BY Town
# Town|Name|COUNT(*)|SUM(Limit1)
= 'Ulm'|'Adams'|1|$100
= 'Bonn'|'baker'|2|$50.5
= null|'Clark'|1|null

SELECT COUNT(*), Town FROM Cust GROUP BY 2 ORDER BY 1 DESC, 2
= 2|'Bonn'
= 1|null
= 1|'Ulm'

SELECT Town FROM Cust GROUP BY 2
! 9020 1:32 column 2 of 1

SELECT Town AS " x" FROM Cust
! 9005 1:8 name of a column

SELECT Town FROM Cust GROUP BY Town HAVING COUNT(*) > 1
= 'Bonn'

SELECT Name, COUNT(*) AS N FROM Cust GROUP BY Name HAVING N = 1 ORDER BY Name DESC
= 'baker'|1
= 'Clark'|1

SELECT EXTRACT(Year FROM Day1) AS Y, SUM(Amount) FROM Inv GROUP BY Y ORDER BY Y
= null|null
= 2012|$1019.5
= 2013|$-3.25

-- Aggregates skip nulls; over nothing they are null, and counts 0.
SELECT COUNT(*), COUNT(Amount), COUNT(DISTINCT CustID), SUM(Amount), MIN(Amount), MAX(Day1), AVG(Qty) FROM Inv
= 5|4|3|$1016.25|$-3.25|2013-01-05|~1.9

SELECT COUNT(*), SUM(Amount), MIN(Amount), AVG(Qty) FROM Inv WHERE InvID > 99
= 0|null|null|null

SELECT CustID, COUNT(*) FROM Inv WHERE InvID > 99 GROUP BY CustID

SELECT SUM(IF (Suspended = true THEN -Limit1 ELSE Limit1)) FROM Cust
= $49.5

SELECT SUM(Amount * 2) AS Twice, MAX(Qty) - MIN(Qty) AS Span FROM Inv
= ~2032.5|~3.9

-- Sub-selects.
SELECT Name FROM Cust WHERE CustID IN (SELECT CustID FROM Inv)
= 'Adams'
= 'baker'

SELECT CustID FROM Cust WHERE CustID NOT IN (SELECT CustID FROM Inv)
= 3
= 4

SELECT CustID FROM Cust C WHERE EXISTS (SELECT * FROM Inv I WHERE I.CustID = C.CustID AND I.Amount > 10)
= 1

SELECT CustID FROM Cust C WHERE NOT EXISTS (SELECT * FROM Inv I WHERE I.CustID = C.CustID)
= 3
= 4

SELECT CustID, (SELECT SUM(Amount) FROM Inv I WHERE I.CustID = C.CustID) AS Total FROM Cust C
# CustID|Total
= 1|$19.5
= 2|$-3.25
= 3|null
= 4|null

-- Beside groups it sees the first row of each.
SELECT Town, (SELECT SUM(Amount) FROM Inv I WHERE I.CustID = C.CustID) AS Total, (SELECT MAX(B.Name) FROM Cust B WHERE EXISTS (SELECT 1 WHERE B.CustID = C.CustID)) FROM Cust C GROUP BY Town HAVING (SELECT COUNT(*) FROM Inv I WHERE I.CustID = C.CustID) > 0 ORDER BY (SELECT MIN(InvID) FROM Inv I WHERE I.CustID = C.CustID) DESC
= 'Bonn'|$-3.25|'baker'
= 'Ulm'|$19.5|'Adams'

SELECT C.Town, MIN(I.InvID), (SELECT COUNT(*) FROM Pay P WHERE P.InvID = I.InvID) FROM Cust C LEFT JOIN Inv I ON I.CustID = C.CustID GROUP BY C.Town
= 'Ulm'|10|2
= 'Bonn'|12|1
= null|null|0

SELECT MAX(CustID), (SELECT COUNT(*) FROM Inv I WHERE I.CustID = C.CustID) FROM Cust C
= 4|2

SELECT T.Town, T.N FROM (SELECT Town, COUNT(*) AS N FROM Cust GROUP BY Town) T WHERE T.N > 1
= 'Bonn'|2

SELECT X.N, Y.C FROM (SELECT CustID AS N FROM Cust WHERE CustID < 3) X, (SELECT COUNT(*) AS C FROM Inv) Y
= 1|5
= 2|5

SELECT Name FROM Cust WHERE CustID = (SELECT CustID FROM Inv)
! 9020 1:38 more than one row

SELECT COUNT(*) FROM Cust WHERE CustID BETWEEN 3 AND 1
= 0

SELECT CustID FROM Cust ORDER BY CASE WHEN Town IS NULL THEN 0 ELSE 1 END, CustID DESC
= 3
= 4
= 2
= 1

SELECT InvID FROM Inv WHERE Amount = (SELECT MAX(Amount) FROM Inv)
= 14

-- UNION drops what is there already, UNION ALL keeps it; ORDER BY and TOP belong to the whole.
SELECT Town FROM Cust UNION SELECT 'Ulm' UNION SELECT 'Rom'
= 'Ulm'
= 'Bonn'
= null
= 'Rom'

SELECT 1 UNION ALL SELECT 1 UNION ALL SELECT 2.5 ORDER BY 1 DESC TOP 2
= ~2.5
= ~1

SELECT CustID, Name FROM Cust WHERE CustID = 1 UNION SELECT CAST(NULL AS Integer), CAST('x' AS Char(5)) ORDER BY Name
= 1|'Adams'
= null|'x'

SELECT InvID FROM Inv TOP 0

SELECT InvID FROM Inv ORDER BY InvID TOP 99
= 10
= 11
= 12
= 13
= 14

SELECT COUNT(*) FROM Inv /* all /* of
them */ WHERE true -- or not
= 5

@ let N 1
@ let Day '2012-04-01'
SELECT InvID FROM Inv WHERE Day1 >= :Day AND Qty > :n ORDER BY Day1 TOP :N
= 11

@ let None null
SELECT InvID FROM Inv WHERE Amount = :None
= 13

@ let
SELECT I.InvID FROM Inv I WHERE I.InvID = :Nobody
! 9020 1:43 Nobody
