# Vouchers reach the ledger: the posting run, what it writes, unposting, and what stands in its way.
@ --today 2026-03-05 --country Canada --date-format MM/dd/yyyy
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '5000', 'Rent', 4)
| GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (7, 'N', 'North')
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (1, 2026, 12, 1001, 'GL', 'JV', '2026-12-31', 'Accrued rent', 500, false, true)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, VendorID, ChequeID) VALUES (2, 2026, 3, 1002, 'AP', 'Chq', '2026-03-02', 'Payments', 70.0001, false, 41, 42)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (3, 2025, 12, 1003, 'GL', 'JV', '2025-12-31', 'Last year', 5, false)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (4, 2026, 2, 1004, 'IN', 'Adj', '2026-02-01', 'Nothing', 0, false)
| JVDet (JVID, Seq, GLAccountID, SubAccount2ID, GLAmount) VALUES (1, 1, 2, 7, 500)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (1, 2, 1, -500)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (2, 1, 2, 70.0001)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (2, 5, 1, -70.0001)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (3, 1, 2, 5)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (3, 2, 1, -5)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount3) VALUES (1, 2026, 'A', 1000, 20)
> {"sql":"INSERT INTO {1}"}
|
> {"sql":"UPDATE JVCtl SET NextJVID = 5, NextJVNumber = 1005"}

# Cancel leaves all as it is. While a voucher is being entered none is posted.
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuPost"}
< {"waiting":{"modal":"frmJVsPost"}}
> {"state":"frmJVsPost"}
< {"state":{"title":"Post Journal Vouchers","modal":true,"default":"btnOK","controls":{"lblRecordCount":{"caption":"4 JV(s) to be posted"},
   "btnOK":{"caption":"OK"},"btnCancel":{"caption":"Cancel"}}}}
> {"click":"frmJVsPost.btnCancel"}
< {"closed":["frmJVsPost"]}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1002}}
> {"click":"frmJVs.mnuEdit"}
< {"opened":["frmJV"]}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"A conflicting program is running...\rPlease close 'Journal Voucher' form"}],"closed":["frmJVsPost"]}
> {"close":"frmJV"}
> {"sql":"SELECT JVID FROM JV WHERE Posted = true"}
< {"rows":[]}

# Of every source, with its documents; the reversal in the next year; what comes after the dialog is posted, too.
> {"click":"frmJVs.mnuPost"}
> {"sql":"UPDATE JV SET TransDescription = 'Payment' WHERE JVID = 2"}
> {"click":"frmJVsPost.btnOK"}
< {"ok":true,"messages":[],"closed":["frmJVsPost"],"finished":[{"command":"frmJVsPost.btnOK"},{"command":"frmJVs.mnuPost","ok":true}]}
> {"sql":"SELECT GLAccountID, SubAccount1ID, SubAccount2ID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription FROM GLHist ORDER BY JVID, GLHistID"}
< {"rows":[[2,null,7,2026,12,"GL","JV",1001,"2026-12-31",500,"Accrued rent"],
   [2,null,7,2027,1,"GL","JVR",1001,"2026-12-31",-500,"Accrued rent"],
   [1,null,null,2026,12,"GL","JV",1001,"2026-12-31",-500,"Accrued rent"],
   [1,null,null,2027,1,"GL","JVR",1001,"2026-12-31",500,"Accrued rent"],
   [2,null,null,2026,3,"AP","Chq",1002,"2026-03-02",70.0001,"Payment"],
   [1,null,null,2026,3,"AP","Chq",1002,"2026-03-02",-70.0001,"Payment"],
   [2,null,null,2025,12,"GL","JV",1003,"2025-12-31",5,"Last year"],
   [1,null,null,2025,12,"GL","JV",1003,"2025-12-31",-5,"Last year"]]}
> {"sql":"SELECT JVID, VendorID, ChequeID, APInvoiceID, CustomerID, ARInvoiceID, PaymentID, AdjustmentID, Reconciled, Reconciling FROM GLHist WHERE JVID < 3 ORDER BY JVID, GLHistID"}
< {"rows":[[1,0,0,0,0,0,0,0,false,false],"...",[2,41,42,0,0,0,0,0,false,false]]}
> {"sql":"SELECT GLAccountID, SubAccount2ID, GLYear, ActualBudget, OpeningBal, Amount1, Amount2, Amount3, Amount12 FROM GLActual ORDER BY GLYear, GLAccountID, SubAccount2ID"}
< {"rows":[[1,null,2025,"A",null,null,null,null,-5],[2,null,2025,"A",null,null,null,null,5],
   [1,null,2026,"A",1000,null,null,-50.0001,-500],[2,null,2026,"A",null,null,null,70.0001,null],
   [2,7,2026,"A",null,null,null,null,500],[1,null,2027,"A",null,500,null,null,null],
   [2,7,2027,"A",null,-500,null,null,null]]}
> {"sql":"SELECT JVID FROM JV WHERE Posted = false"}
< {"rows":[]}

# There is nothing left: OK ends it as cancelled, also where a voucher came since.
> {"click":"frmJVs.mnuPost"}
> {"sql":"INSERT INTO JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, Posted) VALUES (9, 2026, 2, 1009, 'GL', 'JV', '2026-02-01', false)"}
> {"state":"frmJVsPost"}
< {"state":{"controls":{"lblRecordCount":{"caption":"0 JV(s) to be posted"}}}}
> {"click":"frmJVsPost.btnOK"}
< {"ok":true,"messages":[],"closed":["frmJVsPost"]}
> {"sql":"SELECT Posted FROM JV WHERE JVID = 9"}
< {"rows":[[false]]}

# One that cannot be posted keeps all the others: nothing is written, and what was counted before is still to be done.
| TransDate = null WHERE JVID = 9 | Field 'TransDate' must have a value.
| TransDate = '2026-02-01', AutoReverse = true, GLYear = 32767, GLPeriod = 12 WHERE JVID = 9 | The field GLYear of table GLHist cannot hold '32768': the number is out of range
> {"sql":"UPDATE JV SET Posted = false WHERE JVID = 4"}
> {"sql":"DELETE FROM JVDet WHERE JVID = 9"}
> {"sql":"INSERT INTO JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (9, 1, 1, 3)"}
> {"sql":"UPDATE JV SET {1}"}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{2}"}],"closed":["frmJVsPost"]}
> {"sql":"SELECT JVID FROM JV WHERE Posted = false"}
< {"rows":[[4],[9]]}
> {"sql":"SELECT count(*) FROM GLHist"}
< {"rows":[[8]]}
|
> {"sql":"DELETE FROM JV WHERE JVID = 9"}
> {"click":"frmJVs.mnuRefresh"}

# Unposting: not of a closed year, and only when it is meant.
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1003}}
> {"click":"frmJVs.mnuEdit"}
> {"state":"frmJV"}
< {"state":{"controls":{"lblPosted":{"visible":true},"btnUnpost":{"hint":"Unpost this JV","visible":true,"enabled":true}}}}
> {"click":"frmJV.btnUnpost"}
< {"ok":true,"messages":[{"kind":"information","text":"JV is from a previous closed year.\r\rYou need to re-open the year before you can unpost this JV.\rMenu File | General | Your Company\rChange the Fiscal Year."}]}
> {"close":"frmJV"}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.btnUnpost"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Unpost this JV?","buttons":["Yes","No"]}}}
> {"answer":"No"}
> {"sql":"SELECT Posted FROM JV WHERE JVID = 1"}
< {"rows":[[true]]}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1003}}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
< {"ok":true,"messages":[],"closed":[]}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":0}}}}}
> {"sql":"SELECT JVID FROM GLHist WHERE JVID = 1"}
< {"rows":[]}
# A combination that came to nothing keeps its row.
> {"sql":"SELECT GLAccountID, SubAccount2ID, GLYear, Amount1, Amount3, Amount12 FROM GLActual WHERE GLYear > 2025 ORDER BY GLYear, GLAccountID, SubAccount2ID"}
< {"rows":[[1,null,2026,null,-50.0001,0],[2,null,2026,null,70.0001,null],[2,7,2026,null,null,0],
   [1,null,2027,0,null,null],[2,7,2027,0,null,null]]}

# It is an ordinary voucher now, which is edited and posted again. A line without an amount counts as nothing.
> {"state":"frmJV"}
< {"state":{"cursor":"browse","controls":{"lblPosted":{"visible":false},"btnUnpost":{"visible":false},"grdJVDet":{"readOnly":false}}}}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"600"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"-600"}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[2].GLAccount","value":"1000"}
> {"click":"frmJV.btnOK"}
< {"closed":["frmJV"]}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT GLPeriod, Amount FROM GLHist WHERE JVID = 1"}
< {"rows":[[12,600],[1,-600],[12,-600],[1,600],[12,0],[1,0]]}

# History that was purged: rows that cancel it stand in its place, which a later unposting does not find.
> {"sql":"DELETE FROM GLHist"}
> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"close":"frmJV"}
> {"sql":"SELECT JVID, GLYear, GLPeriod, Source, TransType, JVNumber, Amount, CustomerID, Reconciled, Reconciling FROM GLHist WHERE Amount <> 0"}
< {"rows":[[null,2026,12,"GL","JV",1001,-600,0,null,null],[null,2027,1,"GL","JVR",1001,600,0,null,null],
   [null,2026,12,"GL","JV",1001,600,0,null,null],[null,2027,1,"GL","JVR",1001,-600,0,null,null]]}
> {"sql":"SELECT DISTINCT Amount12 FROM GLActual WHERE GLYear = 2026 AND Amount12 IS NOT NULL"}
< {"rows":[[0]]}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT count(*) FROM GLHist"}
< {"rows":[[6]]}

# One that a subledger wrote is unposted in the same way.
> {"close":"frmJV"}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1002}}
> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT GLAccountID, Amount3 FROM GLActual WHERE GLYear = 2026 AND Amount3 IS NOT NULL"}
< {"rows":[[1,20],[2,0]]}

# A period that no entry lets through reaches the history and the row of totals, but none of its amounts.
> {"close":"frmJV"}
> {"sql":"UPDATE JV SET Posted = true"}
> {"sql":"INSERT INTO JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, Posted, AutoReverse) VALUES (8, 2026, 13, 1008, 'GL', 'JV', '2026-12-31', false, true)"}
> {"sql":"INSERT INTO JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (8, 1, 3, 5)"}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT GLYear, GLPeriod, Amount FROM GLHist WHERE JVID = 8"}
< {"rows":[[2026,13,5],[2027,1,-5]]}
> {"sql":"SELECT GLYear, Amount1, Amount12 FROM GLActual WHERE GLAccountID = 3"}
< {"rows":[[2026,null,null],[2027,-5,null]]}
