-- Statements of the screens, runs and reports over the tables of a new company: all of their names and types fit.
@ company
@ let CarrierID 1
@ let ARInvoiceID 1
@ let GLYear 1
@ let JVID 1
@ let SelectedGLAccountID 1
@ let SelectedStmtID 1
@ let SelectedBankID 1
@ let CustomerID 1
@ let CurrencyID 1
@ let VendorID 1
@ let ItemSubtypeID 1
@ let PriceListIDFrom 1
@ let ItemTypeID 1
@ let ItemID 1
@ let Preference 1
@ let ReceiptID 1
@ let LotID 1
@ let WarehouseID 1
@ let MaterialItemID 1
@ let GLPeriod 1
@ let TransType 1
@ let FromLotID 1
@ let PaymentID 1
@ let ChequeNo '100'
@ let BankID 1
@ let PaidBy 1
@ let ShiptoID 1
@ let DueDate CAST('2012-03-31' AS Date)
@ let RequestedShipDate CAST('2012-03-31' AS Date)
@ let TransDate CAST('2012-03-31' AS Date)
@ let AsOfDate CAST('2012-03-31' AS Date)
@ let PaymentDate CAST('2012-03-31' AS Date)
@ let ChequeAmount CAST(12.5 AS Money)
@ let Quantity 2.5
@ let QtyReceived1 1.5
@ let QtyReceived2 1.5
@ let OrderID 1
@ let AdjustmentID 1
@ let GLAccount '5000'
@ let SubAccount '10'
@ let TransDescription 'moved'
@ let LotNo 'L2'
@ let FromLotNo 'L1'
@ let ExpiryDate CAST('2013-01-01' AS Date)

-- Next identifiers and sequence numbers.
SELECT max(CarrierID) FROM Carrier
= null

SELECT max(Seq) FROM ARInvDet WHERE ARInvoiceID=:ARInvoiceID
= null

-- Existence tests.
SELECT StmtID FROM FStmt TOP 1;

SELECT * FROM ShipDet WHERE OrderID = 12 AND Seq = 3;

SELECT COUNT(*) FROM APCheq
WHERE (Posted = false) and (GLYear=:GLYear)
= 0

-- Accounts with and without a balance.
SELECT GLAccountID FROM GLActual WHERE GLAccountID = 4711 AND (COALESCE(OpeningBal,0) + COALESCE(Amount1,0) < -0.0000001 OR COALESCE(OpeningBal,0) + COALESCE(Amount1,0) > 0.0000001) TOP 1;

DELETE FROM GLActual WHERE SubAccount2ID = 7 AND OpeningBal + Amount1 BETWEEN -0.0000001 AND 0.0000001;

SELECT g.GLAccountID, g.GLAccount, g.AccountName, g.AccountType, a.* FROM GLAccnt g LEFT OUTER JOIN GLActual a ON a.GLAccountID = g.GLAccountID LEFT OUTER JOIN GLAcSub1 s1 ON s1.SubAccountID = a.SubAccount1ID ORDER BY g.GLAccount, s1.SubAccount, a.GLYear;

SELECT A.*, G.AccountType, G.RetainedEarnings FROM GLActual A
INNER JOIN GLAccnt G ON A.GLAccountID = G.GLAccountID
WHERE GLYear=:GLYear;

SELECT GLAccountID FROM GLAccnt WHERE (AccountType = 5) AND (RetainedEarnings = True);

-- Tables in memory.
CREATE TABLE "\Memory\JVDataImport" (Account CHAR(10), SubAccount1 CHAR(5), SubAccount2 CHAR(5), SubAccount3 CHAR(5), Amount NUMERIC(10,2));

DROP TABLE IF EXISTS "\Memory\CustomerImport";

SELECT * INTO "\Memory\GLActual" FROM GLActual;

CREATE TABLE "\Memory\BOMExplosion" (ItemID Integer, Quantity Float);

SELECT M.ItemID, SUM(M.Quantity) AS Total FROM "\Memory\BOMExplosion" M GROUP BY M.ItemID ORDER BY Total DESC;

SELECT * INTO "\Memory\Aged" FROM ARInv;

INSERT INTO "\Memory\Aged" SELECT * FROM ARInv;

UPDATE "\Memory\Aged" SET "\Memory\Aged".Owing = 0;

-- Lines of a voucher, of a bank book, of a statement.
SELECT JVDet.*, JV.JVAmount, JV.AutoReverse FROM JVDet INNER JOIN JV ON JV.JVID = JVDet.JVID  WHERE JVID = :JVID ORDER BY JVDet.Seq;

SELECT GLHistID, GLAccountID, TransDate, Source, Amount, TransDescription, VendorID, CustomerID FROM GLHist WHERE GLAccountID=:SelectedGLAccountID ORDER BY TransDate, GLHistID;

SELECT * FROM FStmtLin WHERE StmtID=:SelectedStmtID ORDER BY LineNo;

-- Documents to be posted or printed.
SELECT I.* FROM ARInv I WHERE (I.Posted = false) AND ((I.SOInvoice = true) or (I.Printed = true));

SELECT P.*, C.CurrencyID FROM ARPmt P INNER JOIN Customer C ON P.CustomerID = C.CustomerID WHERE P.Posted = false;

SELECT C.*, V.CurrencyID FROM APCheq C LEFT OUTER JOIN Vendor V ON C.VendorID = V.VendorID WHERE (C.Posted = false) and (((C.PaidBy = 2) and (C.ChequeNo Is Not Null)) or (C.PaidBy <> 2));

SELECT C.*, V.VendorNo, V.VendorName FROM APCheq C INNER JOIN Vendor V ON C.VendorID = V.VendorID WHERE (C.PaidBy = 2) AND (C.ChequeNo IS NULL) AND (BankID=:SelectedBankID) ORDER BY V.VendorName, V.VendorNo;

-- Invoices to be paid.
SELECT ARInvoiceID, InvoiceNo, Posted FROM ARInv WHERE CustomerID = :CustomerID AND Owing <> 0 ORDER BY InvoiceNo;

SELECT I.*, V.VendorNo, V.VendorName, V.VendorID, V.CurrencyID FROM APInv I INNER JOIN Vendor V ON I.VendorID = V.VendorID WHERE (I.Owing <> 0) and (I.Posted = true) and (I.DueDate<=:DueDate) and (V.CurrencyID=:CurrencyID) and (V.VendorID=:VendorID) and (V.VendorID NOT IN (SELECT VendorID FROM APCheq WHERE Posted = false)) ORDER BY V.VendorName, V.VendorNo, I.InvoiceNo;

INSERT INTO ARPmt (PaymentID, ChequeNo, CustomerID, BankID, GLYear, GLPeriod, PaymentDate, ChequeAmount, Posted, Reconciled, PaidBy) VALUES (:PaymentID, :ChequeNo, :CustomerID, :BankID, :GLYear, :GLPeriod, :PaymentDate, :ChequeAmount, true, false, :PaidBy);

-- Prices and vendors' items.
SELECT I.ItemID, P.UnitPrice FROM ITEM I LEFT OUTER JOIN Price P ON P.ItemID = I.ItemID AND P.PriceListID = :PriceListIDFrom WHERE I.ItemSubtypeID = :ItemSubtypeID;

SELECT VI.VItemID, VI.VCost FROM VendItem VI LEFT OUTER JOIN Item I ON VI.ItemID = I.ItemID WHERE VI.VendorID = :VendorID AND I.ItemTypeID = :ItemTypeID;

SELECT VItemID, VCost, QtyPerVItem, Preference FROM VendItem WHERE VendorID = :VendorID AND ItemID = :ItemID AND Suspended = false ORDER BY Preference TOP 1;

SELECT VItemID FROM VendItem WHERE VendorID <> :VendorID AND ItemID = :ItemID AND Suspended = false AND Preference < :Preference TOP 1;

SELECT ItemID, ItemNo, ItemDescription FROM Item WHERE Purchased = true AND ItemID NOT IN (SELECT ItemID FROM VendItem WHERE VendorID = :VendorID)AND ItemSubtypeID = :ItemSubtypeID;

SELECT DISTINCT VI.ItemID, I.ItemNo, I.Backorderable, I.MinimumQty, I.Sold, I.Material FROM VendItem VI INNER JOIN Item I On I.ItemID = VI.ItemID WHERE VI.VendorID = :VendorID AND I.Suspended = false AND ItemTypeID = :ItemTypeID;

SELECT VI.VItemID, VI.VCost, VI.VendorID, VI.QtyPerVItem, VI.Preference, IF(VI.VendorID = 3 OR VI.VendorID = 9 THEN 1 ELSE 2) AS SameVendor FROM VendItem VI INNER JOIN Vendor V ON V.VendorID = VI.VendorID WHERE (ItemID = :ItemID) AND (VI.Suspended = False) AND (V.Suspended = False) ORDER BY Preference, SameVendor;

SELECT IR.Seq, IR.QtyReceived, IR.UnitCost, I.InventoryGLAccountID FROM IRecDet IR LEFT OUTER JOIN POrdDet PD ON PD.OrderID = IR.OrderID AND PD.Seq = IR.Seq LEFT OUTER JOIN VendItem VI ON VI.VitemID = PD.VItemID LEFT OUTER JOIN Item I ON I.ItemID = VI.ItemID WHERE ReceiptID = :ReceiptID;

-- Quantities.
SELECT SUM( IF(TransType = 2 OR TransType = 5 THEN -Quantity ELSE Quantity)) AS LotQty FROM IHist WHERE LotID = :LotID
= null

SELECT SUM(IF ((H.TransType = 2) OR (H.TransType = 5) THEN -H.Quantity ELSE H.Quantity)) AS QtyOnHand FROM IHist H WHERE ItemID = :ItemID AND LotID = :LotID AND WarehouseID = :WarehouseID
= null

SELECT SUM(QtyOnHand - COALESCE(QtyShippedNotYetUpd,0)) AS ItemQtyAvailable FROM IBalance WHERE ItemID = :ItemID
= null

SELECT B.ItemID, I.ItemDescription, SUM(B.QtyOnHand) AS TQtyOnHand, SUM(B.QtyShippedNotYetUpd) AS TQtyShippedNotYetUpd, It.Inventory FROM IBalance B LEFT OUTER JOIN Item I ON B.ItemID = I.ItemID LEFT OUTER JOIN ItemType It ON I.ItemTypeID = It.ItemTypeID WHERE ItemID=:ItemID  GROUP BY ItemID, Inventory, ItemDescription;

SELECT ItemID, WarehouseID, SUM (CASE WHEN TransType=1 THEN Quantity WHEN TransType=2 THEN -Quantity WHEN TransType=3 THEN Quantity WHEN TransType=4 THEN Quantity WHEN TransType=5 THEN -Quantity END) AS TotQuantity FROM IHist WHERE GLYEAR < 2011 GROUP BY ItemID, WarehouseID;

SELECT MRM.QtyUsed FROM MRecMtl MRM INNER JOIN MReceipt MR ON MRM.ReceiptID = MR.ReceiptID INNER JOIN MOrder MO ON MR.OrderID = MO.OrderID WHERE (MO.OrderStatus =2) AND (MRM.MaterialItemID = :ItemID) AND (MO.RequestedReceiptDate <= :RequestedShipDate);

UPDATE IBalance SET QtyShippedNotYetUpd = 0;

INSERT INTO IHist (ItemID, WarehouseID, GLYear, GLPeriod, TransType, TransDate, Quantity, TransDescription) VALUES (:ItemID, :WarehouseID, :GLYear, :GLPeriod, :TransType, :TransDate, :Quantity, :TransDescription);

-- Lots.
SELECT LotID FROM Lot WHERE ItemID = :ItemID AND Completed <> true TOP 2;

SELECT LotID, LotNo, ExpiryDate, Completed FROM Lot WHERE ItemID = :ItemID AND LotID <> :FromLotID ORDER BY LotNo, ExpiryDate;

UPDATE Lot SET Completed = true WHERE LotID = :LotID;

UPDATE IRecDet SET LotNo = :LotNo, ExpiryDate = :ExpiryDate WHERE ReceiptID = :ReceiptID AND LotNo = :FromLotNo AND QtyReceived - :QtyReceived1 < 0.0000001 AND QtyReceived - :QtyReceived2 > -0.0000001;

UPDATE ShipDet SET LotID = :LotID WHERE LotID = :FromLotID;

SELECT I.ItemNo, L.LotNo, W.WarehouseName FROM Item I, Lot L, Warehse W WHERE L.ItemID = I.ItemID AND (WarehouseID = 2) ORDER BY I.ItemNo, L.LotNo, W.WarehouseName NOCASE;

SELECT I.ItemID, I.ItemNo, L.LotID, L.LotNo FROM Item I INNER JOIN Lot L ON L.ItemID = I.ItemID INNER JOIN ItemType IT ON IT.ItemTypeID = I.ItemTypeID WHERE IT.Inventory = true UNION SELECT I.ItemID, I.ItemNo, CAST(NULL AS Integer), CAST(NULL AS Char(15)) FROM Item I INNER JOIN ItemType IT ON IT.ItemTypeID = I.ItemTypeID WHERE IT.Inventory = true ORDER BY ItemNo, LotNo;

-- What is open at a day.
SELECT I.InvoiceNo, I.InvoiceDate, I.InvoiceAmount, MAX(IF(C.ChequeDate <= '2012-03-31' AND (C.Posted = true) THEN C.ChequeDate ELSE null)) AS MaxChequeDate, COALESCE(SUM(IF (C.ChequeDate <= '2012-03-31' AND (C.Posted = true) THEN IC.PaymentAmount ELSE 0)),0) AS InvPaid /* up to the day */ FROM APInv I LEFT OUTER JOIN APInvChq IC ON IC.APInvoiceID = I.APInvoiceID LEFT OUTER JOIN APCheq C ON C.ChequeID = IC.ChequeID WHERE (I.InvoiceDate <= :AsOfDate) GROUP BY I.InvoiceNo, I.InvoiceDate HAVING (I.InvoiceAmount - InvPaid - IF(I.DiscountTaken = true AND MaxChequeDate <= I.DiscountDate THEN COALESCE(I.DiscountAmount, 0) ELSE 0)) > 0.0001;

-- Purges.
DELETE FROM APCheq WHERE (GLYEAR < 2011);

DELETE FROM APInv WHERE (GLYEAR < 2011) AND (Owing = 0) AND (APInvoiceID NOT IN (SELECT APInvoiceID From APInvChq));

DELETE FROM IHist WHERE (GLYEAR < 2011) AND (ItemId = :ItemID) AND (WarehouseId = :WarehouseID);

DELETE FROM POrder WHERE (OrderDate < '2011-1-1') AND (OrderStatus <> 2) AND (OrderID NOT IN (SELECT OrderID From IReceipt WHERE GLYear >= 2011));

DELETE FROM JVDet WHERE JVID NOT IN (SELECT JVID From JV);

UPDATE ARInv SET ShiptoID = :ShiptoID WHERE CustomerID = :CustomerID;


-- Conditions as the screens' filters have them.
SELECT * FROM GLActual WHERE (GLAccountID = 9) AND (ActualBudget = 'A') AND (GLYear >= 2012);
SELECT * FROM JV WHERE Posted = false;
SELECT * FROM ARInv WHERE InvoiceNo = null;
SELECT * FROM Item WHERE (Sold = true) AND (ItemTypeID = 4) AND (ItemSubtypeID = 12);
SELECT * FROM ARInv WHERE ((CustomerID = 5) AND (Posted = true) AND (Owing <> 0)) OR (ARInvoiceID = 77);
SELECT * FROM APCheq WHERE (ChequeNo <> null) AND (PaidBy = 2);
SELECT * FROM IHist WHERE (ItemID = 8) AND (LotID is null) AND (WarehouseID = 1);
SELECT * FROM MOrder WHERE (MfgOrderNo = '1001');
SELECT * FROM GLHist WHERE TransDate >= '2012-1-1' AND UPPER(TransDescription) LIKE '%RENT%';

-- Next identifiers and sequence numbers, existence tests, and look-ups by a code.
SELECT max(GLAccountID) FROM GLAccnt
= null

SELECT max(SubAccountID) FROM GLAcSub1;
= null
SELECT max(Seq) FROM POrdDet WHERE OrderID=:OrderID;
= null
SELECT max(Seq) FROM IAdjDet WHERE AdjustmentID=:AdjustmentID ;
= null
SELECT * FROM IRecDet WHERE OrderID = 12 AND Seq = 3;
SELECT GLAccountID FROM GLAccnt WHERE GLAccount = :GLAccount;
SELECT SubAccountID FROM GLAcSub3 WHERE SubAccount = :SubAccount;
SELECT * FROM Lot WHERE ItemID = :ItemID AND LotNo = :LotNo;
SELECT GLAccount, AccountName, AccountType FROM GLAccnt ORDER BY GLAccount;

SELECT COUNT(*) FROM JV WHERE (Posted = false) and (GLYear=:GLYear);
= 0
SELECT COUNT(*) FROM APInv WHERE (Posted = false) and (GLYear=:GLYear);
= 0
SELECT COUNT(*) FROM ARInv WHERE (Posted = false) and (GLYear=:GLYear);
= 0
SELECT COUNT(*) FROM ARPmt WHERE (Posted = false) and (GLYear=:GLYear);
= 0
SELECT COUNT(*) FROM IAdjust WHERE (Posted = false) and (GLYear=:GLYear);
= 0

-- Balances and the budget beside the accounts, whose subaccounts may be missing.
SELECT g.GLAccountID, g.GLAccount, g.AccountName, g.AccountType, a.*, s1.SubAccount, s1.SubAccountName, s2.SubAccountName, s3.SubAccountName, COALESCE(a.Amount1,0) + COALESCE(a.Amount2,0) + COALESCE(a.Amount12,0) AS TotalChange FROM GLAccnt g LEFT OUTER JOIN GLActual a ON a.GLAccountID = g.GLAccountID LEFT OUTER JOIN GLAcSub1 s1 ON s1.SubAccountID = a.SubAccount1ID LEFT OUTER JOIN GLAcSub2 s2 ON s2.SubAccountID = a.SubAccount2ID LEFT OUTER JOIN GLAcSub3 s3 ON s3.SubAccountID = a.SubAccount3ID ORDER BY g.AccountName, s1.SubAccountName, s2.SubAccountName, s3.SubAccountName, a.GLYear;
SELECT g.GLAccount, b.* FROM GLAccnt g LEFT OUTER JOIN GLBudget b ON b.GLAccountID = g.GLAccountID LEFT OUTER JOIN GLAcSub1 s1 ON s1.SubAccountID = b.SubAccount1ID LEFT OUTER JOIN GLAcSub2 s2 ON s2.SubAccountID = b.SubAccount2ID LEFT OUTER JOIN GLAcSub3 s3 ON s3.SubAccountID = b.SubAccount3ID ORDER BY g.GLAccount, s1.SubAccount, s2.SubAccount, s3.SubAccount, b.GLYear;

-- The narrowest scope that was chosen ends the statement.
SELECT I.ItemID, P.UnitPrice FROM ITEM I LEFT OUTER JOIN Price P ON P.ItemID = I.ItemID AND P.PriceListID = :PriceListIDFrom WHERE I.ItemID = :ItemID;
SELECT I.ItemID, P.UnitPrice FROM ITEM I LEFT OUTER JOIN Price P ON P.ItemID = I.ItemID AND P.PriceListID = :PriceListIDFrom WHERE I.ItemTypeID = :ItemTypeID;
SELECT VI.VItemID, VI.VCost FROM VendItem VI LEFT OUTER JOIN Item I ON VI.ItemID = I.ItemID WHERE VI.VendorID = :VendorID AND I.ItemSubtypeID = :ItemSubtypeID;
SELECT ItemID, ItemNo, ItemDescription FROM Item WHERE Purchased = true AND ItemID NOT IN (SELECT ItemID FROM VendItem WHERE VendorID = :VendorID)AND ItemTypeID = :ItemTypeID;
SELECT DISTINCT VI.ItemID, I.ItemNo, I.Backorderable, I.MinimumQty, I.Sold, I.Material FROM VendItem VI INNER JOIN Item I On I.ItemID = VI.ItemID WHERE VI.VendorID = :VendorID AND I.Suspended = false AND ItemSubtypeID = :ItemSubtypeID;
SELECT VI.VItemID, VI.VCost, VI.VendorID, VI.QtyPerVItem, VI.Preference FROM VendItem VI INNER JOIN Vendor V ON V.VendorID = VI.VendorID WHERE (ItemID = :ItemID) AND (VI.Suspended = False) AND (V.Suspended = False) AND V.VendorID = 3 ORDER BY Preference;
SELECT I.ItemID, I.ItemNo, I.ItemDescription FROM ItemMtl M INNER JOIN Item I ON I.ItemID = M.ItemID WHERE M.MaterialItemID = :ItemID ORDER BY I.ItemNo;

-- Documents to be posted or printed.
SELECT * FROM IAdjust WHERE Posted = false;
SELECT I.* FROM APInv I WHERE I.Posted = false;
SELECT I.*, V.CurrencyID FROM IReceipt I INNER JOIN Vendor V ON I.VendorID = V.VendorID WHERE I.Posted = false;
SELECT C.*, V.VendorNo, V.VendorName, V.AddressLine1, V.AddressLine2, V.City, V.StateProv, V.ZipCode, V.Country, V.CurrencyID FROM APCheq C  INNER JOIN Vendor V ON C.VendorID = V.VendorID WHERE (C.PaidBy = 2) AND (C.ChequeNo IS NULL) AND (BankID=:SelectedBankID) ORDER BY V.VendorName, V.VendorNo;
SELECT IR.Seq, IR.QtyReceived, IR.UnitCost, I.InventoryGLAccountID, I.InventorySubAccount1ID, I.InventorySubAccount2ID, I.InventorySubAccount3ID FROM IRecDet IR LEFT OUTER JOIN POrdDet PD ON PD.OrderID = IR.OrderID AND PD.Seq = IR.Seq LEFT OUTER JOIN VendItem VI ON VI.VitemID = PD.VItemID LEFT OUTER JOIN Item I ON I.ItemID = VI.ItemID WHERE ReceiptID = :ReceiptID;
SELECT I.* FROM ARInv I WHERE I.ARInvoiceID = 7;
SELECT O.*, I.ItemNo FROM MOrder O LEFT OUTER JOIN Item I ON I.ItemID = O.ItemID WHERE O.OrderID = 7;

-- Demand and supply; a computed column may bear the name of a field.
SELECT MOM.QtyOrdered, MOM.WastePC FROM MOrdMtl MOM INNER JOIN MOrder MO ON MOM.OrderID = MO.OrderID WHERE (MO.OrderStatus =2) AND (MOM.MaterialItemID = :ItemID) AND (MO.RequestedReceiptDate <= :RequestedShipDate);
SELECT DISTINCT SOD.OrderID, SOD.Seq, SOD.QtyOrdered, C.CustomerName FROM SOrdDet SOD INNER JOIN SOrder SO ON SOD.OrderID = SO.OrderID INNER JOIN Customer C ON C.CustomerID = SO.CustomerID LEFT OUTER JOIN Shipment S ON S.OrderID = SO.OrderID AND S.Posted = true WHERE (SO.OrderStatus =2) AND (SOD.ItemID = :ItemID) AND (SO.RequestedShipDate <= :RequestedShipDate);
SELECT POD.QtyOrdered*VI.QtyPerVItem QtyOrdered, POD.QtyReceived*VI.QtyPerVItem QtyReceived, POD.Completed FROM POrdDet POD INNER JOIN POrder PO ON POD.OrderID = PO.OrderID INNER JOIN VendItem VI ON VI.VItemID = POD.VItemID LEFT OUTER JOIN IReceipt R ON R.OrderID = PO.OrderID AND R.Posted = true WHERE (PO.OrderStatus =2) AND (VI.ItemID = :ItemID) AND (PO.RequestedReceiptDate <= :RequestedShipDate)
# QtyOrdered|QtyReceived|Completed

SELECT I.ItemNo, I.ItemDescription, L.LotNo, W.WarehouseName, SUM(IF ((H.TransType = 2) OR (H.TransType = 5) THEN -H.Quantity ELSE H.Quantity)) AS Qty FROM IHist H INNER JOIN Item I ON I.ItemID = H.ItemID LEFT OUTER JOIN Lot L ON L.LotID = H.LotID INNER JOIN Warehse W ON W.WarehouseID = H.WarehouseID GROUP BY H.ItemID, H.LotID, H.WarehouseID ORDER BY I.ItemDescription, L.LotNo, W.WarehouseName NOCASE;
SELECT I.ItemID, I.ItemNo, L.LotID, L.LotNo FROM Item I INNER JOIN Lot L ON L.ItemID = I.ItemID INNER JOIN ItemType IT ON IT.ItemTypeID = I.ItemTypeID WHERE IT.Inventory = true AND (ItemSubtypeID = 2) UNION SELECT I.ItemID, I.ItemNo, CAST(NULL AS Integer), CAST(NULL AS Char(15)) FROM Item I INNER JOIN ItemType IT ON IT.ItemTypeID = I.ItemTypeID WHERE IT.Inventory = true AND (ItemSubtypeID = 2) ORDER BY ItemNo, LotNo
# ItemID|ItemNo|LotID|LotNo

-- A lot is merged into another.
SELECT LotID, TransType, ReceiptID, Quantity, UnitCost FROM IHist WHERE LotID = :FromLotID;
UPDATE IRecDet SET LotNo = :LotNo, ExpiryDate = :ExpiryDate WHERE ReceiptID = :ReceiptID AND LotNo = :FromLotNo AND QtyLot1 - :QtyReceived1 < 0.0000001 AND QtyLot1 - :QtyReceived2 > -0.0000001;
UPDATE IRecDet SET Lot2No = :LotNo, ExpiryDate2 = :ExpiryDate WHERE ReceiptID = :ReceiptID AND Lot2No = :FromLotNo AND QtyLot2 - :QtyReceived1 < 0.0000001 AND QtyLot2 - :QtyReceived2 > -0.0000001;
UPDATE IRecDet SET Lot3No = :LotNo, ExpiryDate3 = :ExpiryDate WHERE ReceiptID = :ReceiptID AND Lot3No = :FromLotNo AND QtyLot3 - :QtyReceived1 < 0.0000001 AND QtyLot3 - :QtyReceived2 > -0.0000001;
UPDATE MReceipt SET LotNo = :LotNo, ExpiryDate = :ExpiryDate WHERE ReceiptID = :ReceiptID;
UPDATE ShipDet SET Lot2ID = :LotID WHERE Lot2ID = :FromLotID;
UPDATE ShipDet SET Lot3ID = :LotID WHERE Lot3ID = :FromLotID;
UPDATE ARInvDet SET LotID = :LotID WHERE LotID = :FromLotID;
UPDATE IAdjDet SET LotID = :LotID WHERE LotID = :FromLotID;
UPDATE MRecMtl SET LotID = :LotID WHERE LotID = :FromLotID;
DELETE FROM Lot WHERE LotID = :FromLotID;
UPDATE SOrder SET ShiptoID = :ShiptoID WHERE CustomerID = :CustomerID;

-- Purges of what hangs on nothing any more.
DELETE FROM APInvChq WHERE ChequeID NOT IN (SELECT ChequeID From APCheq);
DELETE FROM APInvDet WHERE APInvoiceID NOT IN (SELECT APInvoiceID From APInv);
DELETE FROM JV WHERE (GLYEAR < 2011) AND (Posted = true);
DELETE FROM IAdjust WHERE (GLYEAR < 2011) AND (Posted = true);
DELETE FROM IAdjDet WHERE AdjustmentID NOT IN (SELECT AdjustmentID From IAdjust);
DELETE FROM POrdDet WHERE OrderID NOT IN (SELECT OrderID From POrder);
DELETE FROM IRecDet WHERE ReceiptID NOT IN (SELECT ReceiptID From IReceipt);

-- Conditions as the lists' filters have them.
SELECT * FROM Item WHERE (Sold = true) OR (Purchased = true) OR (Material = true) OR Manufactured = true OR (Suspended = false);
SELECT * FROM Item WHERE ItemTypeID = null;
SELECT * FROM GLAccnt WHERE (Suspended <> true) AND (AccountType = 1);
SELECT * FROM JV WHERE (Source = 'AP') AND (TransType = 'Inv') AND (Posted = true);
SELECT * FROM GLHist WHERE (Source = 'AR') AND (TransType = 'Pmt');
SELECT * FROM ARInv WHERE (CustomerID = 1) AND (InvoiceNo = null) AND (Posted <> true);
SELECT PaymentID FROM ARPmt WHERE (CustomerID = 1) AND (Reconciled <> true);
= 1
SELECT * FROM APCheq WHERE (ChequeNo = null) AND (PaidBy = 2) AND Reconciled <> true;
SELECT * FROM Lot WHERE (ItemID = 1) AND (Completed <> true);
SELECT * FROM SOrder WHERE (CustomerID = 1) AND (CarrierID = 2) AND (OrderStatus = 1);
SELECT * FROM ICount WHERE (PhysicalQtyOnHand <> null);
SELECT * FROM ICount WHERE (PhysicalQtyOnHand = null);
SELECT * FROM IBalance B WHERE (B.ItemID = 4);
SELECT * FROM IHist WHERE (LotID = 3) AND (WarehouseID = 1);

-- The same over a few rows: three invoices, of which one is paid by the day, one in part and one later.
INSERT INTO APInv (APInvoiceID, InvoiceNo, InvoiceDate, InvoiceAmount, DiscountTaken, DiscountDate, DiscountAmount, Owing, GLYear) VALUES (1, 'P1', '2012-01-10', 100, false, null, null, 0, 2010), (2, 'P2', '2012-02-10', 100, true, '2012-03-01', 2, 0, 2010), (3, 'P3', '2012-03-10', 50.5, false, null, null, 50.5, 2012);
INSERT INTO APCheq (ChequeID, ChequeDate, Posted) VALUES (1, '2012-02-01', true), (2, '2012-05-01', true);
INSERT INTO APInvChq (APInvoiceID, ChequeID, PaymentAmount) VALUES (1, 1, 40), (2, 1, 98), (3, 2, 50.5);
SELECT I.InvoiceNo, COALESCE(SUM(IF (C.ChequeDate <= '2012-03-31' AND (C.Posted = true) THEN IC.PaymentAmount ELSE 0)),0) AS InvPaid, MAX(IF(C.ChequeDate <= '2012-03-31' AND (C.Posted = true) THEN C.ChequeDate ELSE null)) AS MaxChequeDate FROM APInv I LEFT OUTER JOIN APInvChq IC ON IC.APInvoiceID = I.APInvoiceID LEFT OUTER JOIN APCheq C ON C.ChequeID = IC.ChequeID WHERE (I.InvoiceDate <= :AsOfDate) GROUP BY I.InvoiceNo, I.InvoiceDate HAVING (I.InvoiceAmount - InvPaid - IF(I.DiscountTaken = true AND MaxChequeDate <= I.DiscountDate THEN COALESCE(I.DiscountAmount, 0) ELSE 0)) > 0.0001
= 'P1'|$40|2012-02-01
= 'P3'|$0|null

DELETE FROM APInvChq WHERE ChequeID = 2
+ 1

DELETE FROM APInv WHERE (Owing = 50.5) AND (APInvoiceID NOT IN (SELECT APInvoiceID From APInvChq))
+ 1

SELECT max(APInvoiceID) FROM APInv
= 2
