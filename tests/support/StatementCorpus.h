#pragma once

#include <string_view>

// Statements as the screens, runs and reports write them, and the rest of the dialect beside them.
namespace quillon::sim {

inline constexpr std::string_view kStatementCorpus[] = {
    // Next identifiers and sequence numbers
    "SELECT max(CarrierID) FROM Carrier",
    "SELECT max(Seq) FROM ARInvDet WHERE ARInvoiceID=:ARInvoiceID ",
    // Existence tests
    "SELECT StmtID FROM FStmt TOP 1",
    "SELECT * FROM ShipDet WHERE OrderID = 12 AND Seq = 3",
    "SELECT COUNT(*) FROM APCheq\r\nWHERE (Posted = false) and (GLYear=:GLYear)",
    // Accounts with and without a balance
    "SELECT GLAccountID FROM GLActual WHERE GLAccountID = 4711 AND (COALESCE(OpeningBal,0) + COALESCE(Amount1,0) < "
    "-0.0000001 OR COALESCE(OpeningBal,0) + COALESCE(Amount1,0) > 0.0000001) TOP 1",
    "DELETE FROM GLActual WHERE SubAccount2ID = 7 AND OpeningBal + Amount1 BETWEEN -0.0000001 AND 0.0000001",
    "SELECT g.GLAccountID, g.GLAccount, g.AccountName, g.AccountType, a.* FROM GLAccnt g LEFT OUTER JOIN GLActual a ON "
    "a.GLAccountID = g.GLAccountID LEFT OUTER JOIN GLAcSub1 s1 ON s1.SubAccountID = a.SubAccount1ID ORDER BY "
    "g.GLAccount, "
    "s1.SubAccount, a.GLYear",
    "SELECT A.*, G.AccountType, G.RetainedEarnings FROM GLActual A\rINNER JOIN GLAccnt G ON A.GLAccountID = "
    "G.GLAccountID\r"
    "WHERE GLYear=:GLYear",
    "SELECT GLAccountID FROM GLAccnt WHERE (AccountType = 5) AND (RetainedEarnings = True)",
    // Tables in memory
    "CREATE TABLE \"\\Memory\\JVDataImport\" (Account CHAR(10), SubAccount1 CHAR(5), SubAccount2 CHAR(5), SubAccount3 "
    "CHAR(5), Amount NUMERIC(10,2))",
    "DROP TABLE IF EXISTS \"\\Memory\\CustomerImport\"",
    "SELECT * INTO \"\\Memory\\GLActual\" FROM GLActual",
    "SELECT M.ItemID, SUM(M.Quantity) AS Total FROM \"\\Memory\\BOMExplosion\" M GROUP BY M.ItemID ORDER BY Total DESC",
    "INSERT INTO \"\\Memory\\Aged\" SELECT * FROM ARInv",
    "UPDATE \"\\Memory\\Aged\" SET \"\\Memory\\Aged\".Owing = 0",
    // Lines of a voucher, of a bank book, of a statement
    "SELECT JVDet.*, JV.JVAmount, JV.AutoReverse FROM JVDet INNER JOIN JV ON JV.JVID = JVDet.JVID  WHERE JVID = :JVID "
    "ORDER BY JVDet.Seq",
    "SELECT GLHistID, GLAccountID, TransDate, Source, Amount, TransDescription, VendorID, CustomerID FROM GLHist WHERE "
    "GLAccountID=:SelectedGLAccountID ORDER BY TransDate, GLHistID",
    "SELECT * FROM FStmtLin WHERE StmtID=:SelectedStmtID ORDER BY LineNo",
    // Documents to be posted or printed
    "SELECT I.* FROM ARInv I WHERE (I.Posted = false) AND ((I.SOInvoice = true) or (I.Printed = true))",
    "SELECT P.*, C.CurrencyID FROM ARPmt P INNER JOIN Customer C ON P.CustomerID = C.CustomerID WHERE P.Posted = false",
    "SELECT C.*, V.CurrencyID FROM APCheq C LEFT OUTER JOIN Vendor V ON C.VendorID = V.VendorID WHERE (C.Posted = "
    "false) "
    "and (((C.PaidBy = 2) and (C.ChequeNo Is Not Null)) or (C.PaidBy <> 2))",
    "SELECT C.*, V.VendorNo, V.VendorName FROM APCheq C INNER JOIN Vendor V ON C.VendorID = V.VendorID WHERE (C.PaidBy "
    "= 2) "
    "AND (C.ChequeNo IS NULL) AND (BankID=:SelectedBankID) ORDER BY V.VendorName, V.VendorNo",
    // Invoices to be paid
    "SELECT ARInvoiceID, InvoiceNo, Posted FROM ARInv WHERE CustomerID = :CustomerID AND Owing <> 0 ORDER BY InvoiceNo",
    "SELECT I.*, V.VendorNo, V.VendorName, V.VendorID, V.CurrencyID FROM APInv I INNER JOIN Vendor V ON I.VendorID = "
    "V.VendorID WHERE (I.Owing <> 0) and (I.Posted = true) and (I.DueDate<=:DueDate) and (V.CurrencyID=:CurrencyID) "
    "and "
    "(V.VendorID=:VendorID) and (V.VendorID NOT IN (SELECT VendorID FROM APCheq WHERE Posted = false)) ORDER BY "
    "V.VendorName, V.VendorNo, I.InvoiceNo",
    "INSERT INTO ARPmt (PaymentID, ChequeNo, CustomerID, BankID, GLYear, GLPeriod, PaymentDate, ChequeAmount, Posted, "
    "Reconciled, PaidBy) VALUES (:PaymentID, :ChequeNo, :CustomerID, :BankID, :GLYear, :GLPeriod, :PaymentDate, "
    ":ChequeAmount, true, false, :PaidBy)",
    // Prices and vendors' items
    "SELECT I.ItemID, P.UnitPrice FROM ITEM I LEFT OUTER JOIN Price P ON P.ItemID = I.ItemID AND P.PriceListID = "
    ":PriceListIDFrom WHERE I.ItemSubtypeID = :ItemSubtypeID",
    "SELECT VI.VItemID, VI.VCost FROM VendItem VI LEFT OUTER JOIN Item I ON VI.ItemID = I.ItemID WHERE VI.VendorID = "
    ":VendorID AND I.ItemTypeID = :ItemTypeID",
    "SELECT VItemID, VCost, QtyPerVItem, Preference FROM VendItem WHERE VendorID = :VendorID AND ItemID = :ItemID AND "
    "Suspended = false ORDER BY Preference TOP 1",
    "SELECT VItemID FROM VendItem WHERE VendorID <> :VendorID AND ItemID = :ItemID AND Suspended = false AND "
    "Preference < "
    ":Preference TOP 1",
    "SELECT ItemID, ItemNo, ItemDescription FROM Item WHERE Purchased = true AND ItemID NOT IN (SELECT ItemID FROM "
    "VendItem "
    "WHERE VendorID = :VendorID)AND ItemSubtypeID = :ItemSubtypeID",
    "SELECT DISTINCT VI.ItemID, I.ItemNo, I.Backorderable, I.MinimumQty, I.Sold, I.Material FROM VendItem VI INNER "
    "JOIN "
    "Item I On I.ItemID = VI.ItemID WHERE VI.VendorID = :VendorID AND I.Suspended = false AND ItemTypeID = :ItemTypeID",
    "SELECT VI.VItemID, VI.VCost, VI.VendorID, VI.QtyPerVItem, VI.Preference, IF(VI.VendorID = 3 OR VI.VendorID = 9 "
    "THEN 1 "
    "ELSE 2) AS SameVendor FROM VendItem VI INNER JOIN Vendor V ON V.VendorID = VI.VendorID WHERE (ItemID = :ItemID) "
    "AND "
    "(VI.Suspended = False) AND (V.Suspended = False) ORDER BY Preference, SameVendor",
    "SELECT IR.Seq, IR.QtyReceived, IR.UnitCost, I.InventoryGLAccountID FROM IRecDet IR LEFT OUTER JOIN POrdDet PD ON "
    "PD.OrderID = IR.OrderID AND PD.Seq = IR.Seq LEFT OUTER JOIN VendItem VI ON VI.VitemID = PD.VItemID LEFT OUTER "
    "JOIN Item "
    "I ON I.ItemID = VI.ItemID WHERE ReceiptID = :ReceiptID",
    // Quantities
    "SELECT SUM( IF(TransType = 2 OR TransType = 5 THEN -Quantity ELSE Quantity)) AS LotQty FROM IHist WHERE LotID = "
    ":LotID",
    "SELECT SUM(IF ((H.TransType = 2) OR (H.TransType = 5) THEN -H.Quantity ELSE H.Quantity)) AS QtyOnHand FROM IHist "
    "H "
    "WHERE ItemID = :ItemID AND LotID = :LotID AND WarehouseID = :WarehouseID",
    "SELECT SUM(QtyOnHand - COALESCE(QtyShippedNotYetUpd,0)) AS ItemQtyAvailable FROM IBalance WHERE ItemID = :ItemID",
    "SELECT B.ItemID, I.ItemDescription, SUM(B.QtyOnHand) AS TQtyOnHand, SUM(B.QtyShippedNotYetUpd) AS "
    "TQtyShippedNotYetUpd, It.Inventory FROM IBalance B LEFT OUTER JOIN Item I ON B.ItemID = I.ItemID LEFT OUTER JOIN "
    "ItemType It ON I.ItemTypeID = It.ItemTypeID WHERE ItemID=:ItemID  GROUP BY ItemID, Inventory, ItemDescription",
    "SELECT ItemID, WarehouseID, SUM (CASE WHEN TransType=1 THEN Quantity WHEN TransType=2 THEN -Quantity WHEN "
    "TransType=3 "
    "THEN Quantity WHEN TransType=4 THEN Quantity WHEN TransType=5 THEN -Quantity END) AS TotQuantity FROM IHist WHERE "
    "GLYEAR < 2011 GROUP BY ItemID, WarehouseID",
    "SELECT MRM.QtyUsed FROM MRecMtl MRM INNER JOIN MReceipt MR ON MRM.ReceiptID = MR.ReceiptID INNER JOIN MOrder MO "
    "ON "
    "MR.OrderID = MO.OrderID WHERE (MO.OrderStatus =2) AND (MRM.MaterialItemID = :ItemID) AND (MO.RequestedReceiptDate "
    "<= "
    ":RequestedShipDate)",
    "UPDATE IBalance SET QtyShippedNotYetUpd = 0",
    "INSERT INTO IHist (ItemID, WarehouseID, GLYear, GLPeriod, TransType, TransDate, Quantity, TransDescription) "
    "VALUES "
    "(:ItemID, :WarehouseID, :GLYear, :GLPeriod, :TransType, :TransDate, :Quantity, :TransDescription)",
    // Lots
    "SELECT LotID FROM Lot WHERE ItemID = :ItemID AND Completed <> true TOP 2",
    "SELECT LotID, LotNo, ExpiryDate, Completed FROM Lot WHERE ItemID = :ItemID AND LotID <> :FromLotID ORDER BY "
    "LotNo, "
    "ExpiryDate",
    "UPDATE Lot SET Completed = true WHERE LotID = :LotID",
    "UPDATE IRecDet SET LotNo = :LotNo, ExpiryDate = :ExpiryDate WHERE ReceiptID = :ReceiptID AND LotNo = :FromLotNo "
    "AND "
    "QtyReceived - :QtyReceived1 < 0.0000001 AND QtyReceived - :QtyReceived2 > -0.0000001",
    "UPDATE ShipDet SET LotID = :LotID WHERE LotID = :FromLotID",
    "SELECT I.ItemNo, L.LotNo, W.WarehouseName FROM Item I, Lot L, Warehse W WHERE L.ItemID = I.ItemID AND "
    "(WarehouseID = "
    "2) ORDER BY I.ItemNo, L.LotNo, W.WarehouseName NOCASE",
    "SELECT I.ItemID, I.ItemNo, L.LotID, L.LotNo FROM Item I INNER JOIN Lot L ON L.ItemID = I.ItemID INNER JOIN "
    "ItemType IT "
    "ON IT.ItemTypeID = I.ItemTypeID WHERE IT.Inventory = true UNION SELECT I.ItemID, I.ItemNo, CAST(NULL AS Integer), "
    "CAST(NULL AS Char(15)) FROM Item I INNER JOIN ItemType IT ON IT.ItemTypeID = I.ItemTypeID WHERE IT.Inventory = "
    "true "
    "ORDER BY ItemNo, LotNo",
    // What is open at a day
    "SELECT I.InvoiceNo, I.InvoiceDate, I.InvoiceAmount, MAX(IF(C.ChequeDate <= '2012-03-31' AND (C.Posted = true) "
    "THEN "
    "C.ChequeDate ELSE null)) AS MaxChequeDate, COALESCE(SUM(IF (C.ChequeDate <= '2012-03-31' AND (C.Posted = true) "
    "THEN "
    "IC.PaymentAmount ELSE 0)),0) AS InvPaid /* up to the day */ FROM APInv I LEFT OUTER JOIN APInvChq IC ON "
    "IC.APInvoiceID "
    "= I.APInvoiceID LEFT OUTER JOIN APCheq C ON C.ChequeID = IC.ChequeID WHERE (I.InvoiceDate <= :AsOfDate) GROUP BY "
    "I.InvoiceNo, I.InvoiceDate HAVING (I.InvoiceAmount - InvPaid - IF(I.DiscountTaken = true AND MaxChequeDate <= "
    "I.DiscountDate THEN COALESCE(I.DiscountAmount, 0) ELSE 0)) > 0.0001",
    // Purges
    "DELETE FROM APCheq WHERE (GLYEAR < 2011)",
    "DELETE FROM APInv WHERE (GLYEAR < 2011) AND (Owing = 0) AND (APInvoiceID NOT IN (SELECT APInvoiceID From "
    "APInvChq))",
    "DELETE FROM IHist WHERE (GLYEAR < 2011) AND (ItemId = :ItemID) AND (WarehouseId = :WarehouseID)",
    "DELETE FROM POrder WHERE (OrderDate < '2011-1-1') AND (OrderStatus <> 2) AND (OrderID NOT IN (SELECT OrderID From "
    "IReceipt WHERE GLYear >= 2011))",
    "DELETE FROM JVDet WHERE JVID NOT IN (SELECT JVID From JV)",
    "UPDATE ARInv SET ShiptoID = :ShiptoID WHERE CustomerID = :CustomerID",
    // Values
    "SELECT -9223372036854775808, 9223372036854775807, 12, -12, 1.5, -922337203685477.5808, 0.00005, 1e3, .5, 2.E-3, "
    "'it''s', "
    "'', true, FALSE, NULL, :Now, CURRENT_DATE",
    "SELECT EXTRACT(Year from TransDate) AS \"The year\", EXTRACT(MONTH FROM TransDate) M, extract(day from TransDate) "
    "FROM "
    "GLHist -- by day",
    "SELECT CAST(a AS Float), CAST(a AS SmallInt), CAST(1 AS Boolean), CAST('2012-03-31' AS Date), CAST(a AS VarChar), "
    "CAST(a "
    "AS Numeric(12,3)), CAST(a AS Decimal(5)), CAST(a AS NUMERIC(20,0)), CAST(a AS Numeric(18)), CAST(a AS BigInt), "
    " CAST(a AS Numeric(15,6)), CAST(a AS Numeric), "
    "CAST(a AS Double Precision), CAST(a AS Memo), CAST(a AS Time), CAST(a AS DateTime), CAST(a AS Currency) FROM t",
    "SELECT UPPER(a) || lower(b), TRUNC(c), ABS(-c), ROUND(c), Round(c, 2), LENGTH(a), SUBSTRING(a FROM 2 FOR 3), "
    "SUBSTRING(a, 2), SUBSTRING(a, 2, 3), COALESCE(a, b, 'x'), COUNT(a), COUNT(DISTINCT a), COUNT(*), AVG(c), MIN(c) "
    "FROM t",
    "SELECT CASE a WHEN 1 THEN 'one' WHEN 2 THEN 'two' ELSE 'many' END, IF(a > 1, b, c), IF(a > 1 THEN b) FROM t",
    "SELECT a FROM t WHERE a BETWEEN 1 AND 2 AND b NOT BETWEEN c - 1 AND c + 1 OR NOT d LIKE '%x_' OR e NOT LIKE f OR "
    "g IN "
    "(1, -2, 'x', :P) OR g NOT IN (3) OR EXISTS (SELECT 1) OR NOT EXISTS (SELECT * FROM u WHERE u.a = t.a)",
    "SELECT (SELECT MAX(x) FROM u), a.* FROM (SELECT DISTINCT x, y FROM u WHERE x <> y) AS a CROSS JOIN (SELECT 1 AS "
    "one) b "
    "WHERE x = (SELECT MIN(x) FROM u TOP 1)",
    "SELECT ALL 1 AS a FROM (t JOIN u ON t.a = u.a) LEFT JOIN v ON v.a = u.a, w GROUP BY 1 HAVING COUNT(*) > 1 UNION "
    "ALL "
    "SELECT 2 UNION SELECT 3 ORDER BY 1 DESC, a ASC NOCASE TOP :N",
    "SELECT Key, Index, Year, \"Order\", t.Order, t.\"Group\" FROM \"Table\" t ORDER BY \"Order\"",
    // Definitions
    "CREATE TABLE IF NOT EXISTS Payroll (EmpID AutoInc PRIMARY KEY, Name VARCHAR(40) NOT NULL UNIQUE, Born Date NULL, "
    "Hours "
    "Double Precision, Rate Money, Share Decimal(9,4), Count1 Numeric(6), Ratio Numeric(12,6), Kind SmallInt, Dept "
    "Int, At "
    "Time, Stamp TIMESTAMP, Active Boolean, Notes TEXT, Photo Graphic, Raw Blob, Code String(3), "
    "Big LargeInt, UNIQUE (Dept, Code))",
    "CREATE TABLE Pair (a Integer, b Integer, PRIMARY KEY (a, b))",
    "CREATE UNIQUE NOCASE INDEX ByName ON Payroll (Name ASC, Born DESC)",
    "create index ByDept on Payroll (Dept) nocase",
    "ALTER TABLE Payroll ADD COLUMN Phone Char(20), DROP COLUMN Raw, ALTER Code VarChar(5) NOT NULL, MODIFY COLUMN "
    "Kind "
    "Integer, ADD Column Integer, DROP Column",
    "DROP TABLE Payroll;",
    "DROP INDEX ByName ON Payroll",
    "DROP INDEX Payroll.ByDept",
    "EXPLAIN SELECT * FROM Payroll WHERE Name = 'x'",
    // Changes
    "INSERT INTO Payroll VALUES (1, 'Ann'), (2, 'Bob' || :Rest)",
    "INSERT INTO Payroll (Name, Dept) SELECT Name, 1 FROM Staff UNION SELECT Name, 2 FROM Temps ORDER BY Name",
    "INSERT INTO Payroll (SELECT * FROM Staff)",
    "UPDATE Payroll P SET P.Rate = P.Rate * 1.05, Notes = null WHERE P.Dept IN (SELECT Dept FROM Dept WHERE Active)",
    "DELETE FROM Payroll AS P WHERE NOT P.Active",
};

// Conditions as cursors take them for their filters.
inline constexpr std::string_view kFilterCorpus[] = {
    "Posted = false",
    "InvoiceNo = null",
    "(Sold = true) AND (ItemTypeID = 4) AND (ItemSubtypeID = 12)",
    "((CustomerID = 5) AND (Posted = true) AND (Owing <> 0)) OR (ARInvoiceID = 77)",
    "(GLAccountID = 9) AND (ActualBudget = 'A') AND (GLYear >= 2012)",
    "(ChequeNo <> null) AND (PaidBy = 2)",
    "(ItemID = 8) AND (LotID is null) AND (WarehouseID = 1)",
    "(MfgOrderNo = '1001')",
    "TransDate >= '2012-1-1' AND UPPER(TransDescription) LIKE '%RENT%'",
    "(\"Ship Via\" = 'it''s here') AND NOT Suspended",
};

}  // namespace quillon::sim
