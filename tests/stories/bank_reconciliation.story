# A clerk compares a bank statement with the books: figures, ticks that stay, reconciling and undoing it, the ways back.
@ --today 2026-03-05 --country Canada
| Company SET DefaultCurrencyID = 7
> {"sql":"UPDATE {1}"}
|
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1010', 'Bank', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '1020', 'Dollars', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (3, '4000', 'Sales', 3)
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'N', 'North')
| Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Dollar Account', 2, 8)
| Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (2, 'Main', 1, 7)
| APCheq (ChequeID, ChequeNo, BankID, Reconciled) VALUES (30, '117', 2, false)
| APCheq (ChequeID, ChequeNo, BankID, Reconciled) VALUES (31, '118', 2, false)
| ARPmt (PaymentID, BankID, Reconciled) VALUES (30, 2, false)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (5, 2026, 1, 1001, 'GL', 'JV', '2026-01-02', 'Opened', 1000, true, false)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (5, 1, 1, 1000)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (5, 2, 3, -1000)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (6, 2025, 12, 1002, 'GL', 'JV', '2025-12-30', 'Accrued', 7, true, true)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount12) VALUES (1, 2025, 'A', 900, 1)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount1, Amount2, Amount12) VALUES (1, 2026, 'A', 100, 1000, -70.5, 8)
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, OpeningBal, Amount3) VALUES (1, 1, 2026, 'A', 3, 20)
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount3) VALUES (1, 1, 2027, 'A', 5)
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, OpeningBal, Amount3) VALUES (2, 1, 2027, 'A', 30, 4)
| GLActual (GLAccountID, SubAccount1ID, SubAccount2ID, GLYear, ActualBudget, OpeningBal) VALUES (2, 1, 1, 2026, 'A', 500)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, ChequeID, JVID, Reconciled, Reconciling) VALUES (1, 2026, 2, 'AP', 'Chq', 1003, '2026-02-20', -70.5, 'AP Payment: Cheque 117', 30, 7, false, false)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID, Reconciled, Reconciling) VALUES (1, 2026, 1, 'GL', 'JV', 1001, '2026-01-02', 1000, 'Opened', 5, false, false)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID, Reconciled, Reconciling) VALUES (3, 2026, 1, 'GL', 'JV', 1001, '2026-01-02', -1000, 'Opened', 5, false, false)
| GLHist (GLAccountID, SubAccount1ID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, PaymentID, JVID, Reconciled, Reconciling) VALUES (1, 1, 2026, 3, 'AR', 'Pmt', 1004, '2026-03-01', 20, 'AR Payment: Cash', 30, 8, false, false)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID, Reconciled, Reconciling) VALUES (1, 2026, 1, 'GL', 'JVR', 1002, '2025-12-30', 8, 'Accrued', 6, false, false)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription) VALUES (1, 2026, 1, 'GL', 'JV', 1001, '2026-01-03', 0.125, 'Cancelled')
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID, Reconciled, Reconciling) VALUES (1, 2026, 1, 'GL', 'JV', 77, '2026-01-04', -0.125, 'Lost', 88, false, false)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"General > Bank Reconciliation"}
< {"opened":["frmBankRec"],"focus":"frmBankRec.grdGLHist[0].Reconciling"}
# The year is that of the account without subaccounts, and from there on all combinations count.
> {"state":"frmBankRec"}
< {"state":{"title":"Bank Reconciliation","controls":{"cboBank":{"value":"Main"},
   "lblFigures":{"caption":"Balance: 1,065.50       Outstanding: 957.50       Adjusted Balance: 108.00"},
   "btnReconcile":{"caption":"Reconcile"},"btnClose":{"caption":"Close (Save)"},"btnSelectAll":{"caption":"Select All"},
   "btnSelectNone":{"caption":"Select None"},"grdGLHist":{"total":6,"columns":[{"caption":"Select"},{"caption":"Date"},
   {"caption":"Period"},{"caption":"Source"},{"caption":"Payment/Deposit"},{"caption":"Description"}],"rows":[
   {"cells":{"Reconciling":"No","TransDate":"30 Dec 25","GLPeriod":"1/26","Source":"GL JVR","Amount":"8.00","TransDescription":"Accrued"}},
   {"cells":{"TransDate":"02 Jan 26","Source":"GL JV","Amount":"1,000.00"}},{"cells":{"TransDescription":"Cancelled"}},
   {"cells":{"TransDescription":"Lost"}},{"cells":{"Source":"AP Pmt","Amount":"(70.50)"}},{"cells":{"Source":"AR Pmt"}}]}},
   "menus":[{"path":"&Edit > &Unreconcile All Previously Reconciled Transactions"},{"path":"&Edit > &Refresh"},
   {"path":"&View > &Source"},{"path":"&View > &JV"}]}}

# A tick is there at once, by Space, by a click, by a value; the figures go with it.
| {"key":"Space"} | 949.50       Adjusted Balance: 116.00
| {"click":"frmBankRec.grdGLHist[1].Reconciling"} | (50.50)       Adjusted Balance: 1,116.00
| {"set":"frmBankRec.grdGLHist[4].Reconciling","value":true} | 20.00       Adjusted Balance: 1,045.50
| {"set":"frmBankRec.grdGLHist[4].Reconciling","value":true} | 20.00       Adjusted Balance: 1,045.50
| {"key":"Space"} | (50.50)       Adjusted Balance: 1,116.00
| {"key":" "} | 20.00       Adjusted Balance: 1,045.50
> {1}
< {"ok":true,"messages":[]}
> {"state":"frmBankRec"}
< {"state":{"cursor":"browse","controls":{"lblFigures":{"caption":"Balance: 1,065.50       Outstanding: {2}"}}}}
|
> {"sql":"SELECT JVNumber FROM GLHist WHERE Reconciling = true ORDER BY JVNumber"}
< {"rows":[[1001],[1002],[1003]]}
> {"type":"frmBankRec.grdGLHist[4].Reconciling","keys":"y"}
< {"ok":false,"error":{"text":"This is ticked by Space"}}
> {"set":"frmBankRec.grdGLHist[4].Amount","value":"1"}
< {"ok":false,"messages":[{"text":"Nothing can be typed into this list"}]}

# They are still there when the work goes on. All and none.
> {"click":"frmBankRec.btnClose"}
< {"closed":["frmBankRec"]}
> {"menu":"General > Bank Reconciliation"}
| mnuRefresh | 20.00       Adjusted Balance: 1,045.50 | 3
| btnSelectAll | 0.00       Adjusted Balance: 1,065.50 | 6
| btnSelectNone | 957.50       Adjusted Balance: 108.00 | 0
> {"click":"frmBankRec.{1}"}
> {"state":"frmBankRec"}
< {"state":{"controls":{"lblFigures":{"caption":"Balance: 1,065.50       Outstanding: {2}"}}}}
> {"sql":"SELECT count(*) FROM GLHist WHERE Reconciling = true"}
< {"rows":[[{3}]]}
|
# Another bank has its own; one whose account has amounts with subaccounts only goes from the last year of any.
> {"set":"frmBankRec.cboBank","value":"Dollar Account"}
> {"state":"frmBankRec"}
< {"state":{"controls":{"lblFigures":{"caption":"Balance: 34.00       Outstanding: 0.00       Adjusted Balance: 34.00"},
   "grdGLHist":{"total":0}}}}
| {"click":"frmBankRec.mnuJV"}
| {"click":"frmBankRec.grdGLHist"}
> {1}
< {"ok":false,"messages":[],"opened":[],"finished":[{"aborted":true}]}
|
> {"key":"Space"}
< {"ok":true,"messages":[]}
> {"set":"frmBankRec.cboBank","value":""}
> {"state":"frmBankRec"}
< {"state":{"controls":{"lblFigures":{"caption":"Balance: 0.00       Outstanding: 0.00       Adjusted Balance: 0.00"}}}}
> {"set":"frmBankRec.cboBank","value":"Main"}

# To the voucher: of the period before for a reversing row, by its number for a row without an id.
| 0 | 1002
| 1 | 1001
| 2 | 1001
> {"grid":"frmBankRec.grdGLHist","do":"goto","row":{1}}
> {"click":"frmBankRec.mnuJV"}
< {"opened":["frmJVs"]}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"rows":["...",{"cells":{"JVNumber":"{2}"},"active":true},"..."]}}}}
> {"close":"frmJVs"}
> {"click":"frmBankRec.mnuSource"}
< {"opened":["frmJV"]}
> {"state":"frmJV"}
< {"state":{"title":"JV {2}"}}
> {"close":"frmJV"}
|
> {"grid":"frmBankRec.grdGLHist","do":"goto","row":3}
| mnuJV
| mnuSource
> {"click":"frmBankRec.{1}"}
< {"ok":false,"messages":[{"kind":"error","text":"JV 77 not found...\rIt may have been unposted and deleted."}],"opened":[]}
|
# The list behind a payment is not in this version yet.
> {"grid":"frmBankRec.grdGLHist","do":"goto","row":4}
> {"state":"frmBankRec"}
< {"state":{"menus":["...",{"path":"&View > &Source","enabled":false},"..."]}}

# What is ticked leaves the list for good, and its payment is reconciled with it.
> {"click":"frmBankRec.grdGLHist[4].Reconciling"}
> {"click":"frmBankRec.grdGLHist[1].Reconciling"}
> {"click":"frmBankRec.btnReconcile"}
< {"ok":true,"messages":[]}
> {"state":"frmBankRec"}
< {"state":{"controls":{"lblFigures":{"caption":"Balance: 1,065.50       Outstanding: 28.00       Adjusted Balance: 1,037.50"},
   "grdGLHist":{"total":4}}}}
> {"sql":"SELECT JVNumber, Reconciled, Reconciling FROM GLHist WHERE Reconciled = true ORDER BY JVNumber"}
< {"rows":[[1001,true,true],[1003,true,true]]}
> {"sql":"SELECT ChequeID, Reconciled FROM APCheq ORDER BY ChequeID"}
< {"rows":[[30,true],[31,false]]}
> {"sql":"SELECT Reconciled FROM ARPmt"}
< {"rows":[[false]]}

# Unposting takes a reconciled row away without a word.
> {"open":"TfrmJVs"}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVID":5}}
> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT JVNumber FROM GLHist WHERE Reconciled = true"}
< {"rows":[[1003]]}
> {"close":"frmJV"}
> {"close":"frmJVs"}

# Undoing it asks first.
> {"click":"frmBankRec.grdGLHist[0].Reconciling"}
| No | false | [[30,true],[31,false]]
| Yes | true | [[30,false],[31,false]]
> {"click":"frmBankRec.mnuUnreconcile"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Unreconcile all previously reconciled transactions for this bank account?",
   "buttons":["Yes","No"]}}}
> {"answer":"{1}"}
< {"ok":{2},"messages":[]}
> {"sql":"SELECT ChequeID, Reconciled FROM APCheq ORDER BY ChequeID"}
< {"rows":{3}}
|
> {"sql":"SELECT JVNumber, Reconciled, Reconciling FROM GLHist WHERE Reconciled = true OR Reconciling = true"}
< {"rows":[[1002,false,true]]}
> {"state":"frmBankRec"}
< {"state":{"controls":{"lblFigures":{"caption":"Balance: 65.50       Outstanding: (50.50)       Adjusted Balance: 116.00"},
   "grdGLHist":{"total":5}}}}

# Two clerks tick in one bank. A row that the other one ticked meanwhile is shown first.
2> {"menu":"General > Banks"}
2> {"grid":"frmBanks.grdBank","do":"locate","values":{"BankID":2}}
2> {"click":"frmBanks.mnuBankRec"}
2> {"grid":"frmBankRec.grdGLHist","do":"goto","row":3}
> {"click":"frmBankRec.grdGLHist[3].Reconciling"}
2> {"key":"Space"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblGLHist' has been changed or deleted since last retrieved.\rData will now be refreshed."}]}
2> {"state":"frmBankRec"}
2< {"state":{"controls":{"grdGLHist":{"rows":["...",{"cells":{"Reconciling":"Yes","Amount":"(70.50)"},"active":true},"..."]}}}}
# Its figures count the other's ticks.
2> {"click":"frmBankRec.grdGLHist[4].Reconciling"}
2> {"state":"frmBankRec"}
2< {"state":{"controls":{"lblFigures":{"caption":"Balance: 65.50       Outstanding: 0.00       Adjusted Balance: 65.50"}}}}
> {"state":"frmBankRec"}
< {"state":{"controls":{"lblFigures":{"caption":"Balance: 65.50       Outstanding: 20.00       Adjusted Balance: 45.50"}}}}
> {"key":"F5"}
> {"state":"frmBankRec"}
< {"state":{"controls":{"lblFigures":{"caption":"Balance: 65.50       Outstanding: 0.00       Adjusted Balance: 65.50"}}}}
2> {"click":"frmBankRec.btnReconcile"}
> {"click":"frmBankRec.btnSelectAll"}
> {"state":"frmBankRec"}
< {"state":{"controls":{"grdGLHist":{"total":2}}}}
