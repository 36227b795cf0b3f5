-- Values and what is worked out of them; SELECT needs no table.
SELECT 1 + 2, 7 - 10, 3 * 4, 7 / 2, -(-3), 1.5 + 1, 2 + 3 * 4, (2 + 3) * 4
= 3|-3|12|~3.5|3|~2.5|14|20

SELECT 1e3, .5, 2.E-3, 12, -0.25
= ~1000|~0.5|~0.002|12|~-0.25

SELECT 'it''s', '', 'a' || 'b' || 'c', 'a' + 'b', true, FALSE, NULL
= 'it's'|''|'abc'|'ab'|true|false|null

-- An unnamed column is called by its source, and a repeated name gets a number.
SELECT 1+2, 1 + 2, 1+2, 3 AS A, 4 AS a, 5 A_1
# 1+2|1 + 2|1+2_1|A|a_1|A_1_1
= 3|3|3|3|4|5

-- Comparisons are true or false, never unknown.
SELECT null = null, null <> null, 1 = null, 1 <> null, null < 1, null >= null, NOT (null < 1), 1 IS NULL, null IS NOT NULL
= true|false|false|true|false|false|true|false|false

SELECT null IN (1, null), 1 NOT IN (2, null), null NOT IN (1), null BETWEEN 1 AND 2, 2 BETWEEN 1 AND 2, 3 NOT BETWEEN 1 AND 2
= true|true|true|false|true|true

SELECT 1 + null, null || 'a', -(1 * null), UPPER(null)
= null|null|null|null

SELECT true AND NOT false OR false, NOT true = false, 1 < 2 AND 2 <= 2 AND 3 > 2 AND 3 >= 3 AND 1 <> 2
= true|true|true

-- Text compares code points; LIKE knows % and _.
SELECT 'a' = 'A', 'Z' < 'a', 'é' > 'z', 'Abc' LIKE 'A%', 'Abc' LIKE 'a%', 'abc' LIKE '_b_', 'abc' NOT LIKE '%d%', 'a%c' LIKE 'a%'
= false|true|true|true|false|true|true|true

SELECT 'abab' LIKE '%ab', 'aXbXc' LIKE '%X_', 'aXbXc' LIKE '%X_X%', '' LIKE '%', '' LIKE '_', 'ab' LIKE 'a', 'aab' LIKE '%a%a%b%', 'é1é' LIKE '%é'
= true|true|true|true|false|false|true|true

-- A pattern costs no more than its length times the text's.
SELECT 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa' LIKE '%a%a%a%a%a%a%a%a%a%a%b'
= false

SELECT UPPER('straße é'), LOWER('ÀB'), LENGTH('äöü'), SUBSTRING('hello', 2, 3), SUBSTRING('hello' FROM 4 FOR 9), SUBSTRING('hello', 9)
= 'STRAßE É'|'àb'|3|'ell'|'lo'|''

SELECT ABS(-3), ABS(-2.5), TRUNC(2.9), TRUNC(-2.9), ROUND(2.5), ROUND(-2.5), ROUND(1.25, 1), ROUND(0.125, 2)
= 3|~2.5|~2|~-2|~3|~-3|~1.3|~0.13

-- Digits that a number has are not taken for noise.
SELECT ROUND(9007199254740993, -1), ROUND(1.5, 20), ROUND(123456789012345.4), ROUND(1e15), ROUND(1.005, 2)
= 9007199254740990|~1.5|~123456789012345|~1e+15|~1.01

SELECT COALESCE(null, null, 3, 4), COALESCE(null, 'a'), COALESCE(null, 1, 2.5), COALESCE(null, null)
= 3|'a'|~1|null

-- Branches take the widest type of all of them; without ELSE it is null.
SELECT CASE WHEN 1 = 2 THEN 1 ELSE 2.5 END, CASE WHEN false THEN 'a' END, CASE 3 WHEN 1 THEN 'one' WHEN 3 THEN 'three' ELSE 'many' END
= ~2.5|null|'three'

SELECT IF(1 = 1 THEN 1 ELSE 2.5), IF (null = 1 THEN 'a' ELSE 'b'), IF(false THEN 7)
= ~1|'b'|null

-- Casts.
SELECT CAST(3 AS Float), CAST(2.0 AS Integer), CAST(7 AS SmallInt), CAST(1 AS Boolean), CAST('2012-3-1' AS Date), CAST('abcdef' AS Char(3))
= ~3|2|7|true|2012-03-01|'abc'

SELECT CAST(NULL AS Float), CAST(NULL AS Integer), CAST(NULL AS Date), CAST(NULL AS Boolean), CAST(NULL AS Char(5)), CAST(12.345 AS NUMERIC(10,2))
= null|null|null|null|null|$12.35

SELECT CAST(12 AS Char(5)), CAST('12' AS Integer), CAST(1.5 AS Money), CAST('x' AS Integer)
! 9006 1:72

SELECT CAST(40000 AS SmallInt)
! 9006 1:8

SELECT CAST(5000000000 AS Integer)
! 9006 1:8

SELECT CAST(5000000000 AS BIGINT), CAST('9007199254740993' AS LargeInt), CAST('12.7' AS Integer), CAST(-5000000000.5 AS NUMERIC(15,0))
= 5000000000|9007199254740993|12|-5000000000

-- Dates, written with one or two digits; text beside a date is one.
CREATE TABLE Days (D Date, T Time, S TIMESTAMP, Amt Money, F Double, N Integer, Txt VARCHAR(10));
INSERT INTO Days VALUES ('2012-3-1', '9:05', '2012-03-01 14:30:00', 1.1, 0.5, 7, '2012-3-1')
+ 1

SELECT D = '2012-03-01', D < '2012-10-1', D > '2011-12-31', D IN ('2012-3-01'), D BETWEEN '2012-2-29' AND '2012-3-1', Txt = '2012-03-01' FROM Days
= true|true|true|true|true|false

SELECT EXTRACT(Year from D), EXTRACT(Month FROM D), EXTRACT(day from D), EXTRACT(Year FROM null), D, T, S FROM Days
= 2012|3|1|null|2012-03-01|09:05:00|2012-03-01 14:30:00

-- A year has four digits: which century two of them mean is for a person who types to say.
SELECT D FROM Days WHERE D >= '12-1-1'
! 9006 1:31 '12-1-1'

INSERT INTO Days (D) VALUES ('12-1-1')
! 9006 1:30 '12-1-1'

-- Also where it stands first, and in a difference of days.
SELECT D - '2012-02-01', '2012-3-31' - D, COALESCE('2000-1-1', D), CASE WHEN false THEN '2000-1-1' ELSE D END FROM Days
= 29|30|2000-01-01|2012-03-01

-- A date and a number of days.
SELECT D + 30, 30 + D, D - 1, D + null, null + D, D - null FROM Days
= 2012-03-31|2012-03-31|2012-02-29|null|null|null

SELECT D FROM Days WHERE D + 4294967296 = D
! 9006 1:26 outside

SELECT '2012-3-1' UNION SELECT D FROM Days
= 2012-03-01

SELECT D FROM Days WHERE D = '2012-02-30'
! 9006 1:30 2012-02-30

SELECT D FROM Days WHERE D = 'soon'
! 9006 1:30 soon

SELECT MAX(IF(D <= '2012-03-31' THEN D ELSE null)) FROM Days
= 2012-03-01

-- Money stays exact with + and -, SUM and minus; times or divided by anything it is a float.
SELECT Amt + 1, Amt - 0.1, -Amt, Amt * 2, Amt / 2, Amt + F, Amt + 0.12345, Amt + Amt, SUM(Amt), MAX(Amt) FROM Days
= $2.1|$1|$-1.1|~2.2|~0.55|~1.6|~1.2234500000000001|$2.2|$1.1|$1.1

SELECT COALESCE(Amt, 0), IF(N = 7 THEN Amt ELSE 0), COALESCE(null, N, Amt), COALESCE(Amt, F) FROM Days
= $1.1|$1.1|$7|~1.1

SELECT Amt = 1.1, Amt <> 1.10001, Amt > 1, Amt BETWEEN 1.0999 AND 1.1, Amt IN (1.1), Amt = 1.1 + 0 FROM Days
= true|true|true|true|true|true

SELECT SUM(N), AVG(N), AVG(Amt), N / 2, N * N, SUM(F) FROM Days
= 7|~7|~1.1|~3.5|49|~0.5

-- Overflow and division by zero are errors.
SELECT 9223372036854775807 + 1
! 9006 1:8

SELECT -9223372036854775808 - 1
! 9006 1:8

SELECT 4611686018427387904 * 2
! 9006 1:8

SELECT 1 / 0
! 9006 1:8

SELECT Amt / (N - 7) FROM Days
! 9006 1:8

SELECT 1e308 * 10
! 9006 1:8

SELECT Amt + 922337203685477.5807 FROM Days
! 9006 1:8

SELECT -9223372036854775808, 9223372036854775807
= -9223372036854775808|9223372036854775807

-- Types that do not go together.
SELECT D FROM Days WHERE D = 5
! 9021 1:26

SELECT D FROM Days WHERE N = 'seven'
! 9006 1:30

SELECT D FROM Days WHERE Txt
! 9021 1:26

SELECT D FROM Days WHERE Txt > 1
! 9021 1:26

SELECT SUM(Txt) FROM Days
! 9021 1:8

SELECT N FROM Days WHERE N IN ('a')
! 9006 1:32

SELECT 1 + 'a'
! 9021 1:8 a text

SELECT 'a' +
  N FROM Days
! 9021 1:8 a text

SELECT N + 1, Txt + 'b' + null FROM Days
= 8|null

SELECT COALESCE(1, 'a')
! 9006 1:20

SELECT UPPER(1)
! 9021 1:14

SELECT 1 UNION SELECT 'a'
! 9006 1:23

SELECT CURRENT_DATE = CURRENT_DATE, CURRENT_DATE > '2000-1-1'
= true|true
