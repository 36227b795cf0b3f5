# A bank book: the rows of the bank's account by days, with what stood there after each; another bank; the words.
@ --today 2026-03-05 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1010', 'Bank', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '1020', 'Dollars', 1)
| Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Dollar Account', 2, 8)
| Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (2, 'Main', 1, 7)
| Vendor (VendorID, VendorNo, VendorName) VALUES (4, 'T-1', 'Timber & Co')
| Customer (CustomerID, CustomerNo, CustomerName) VALUES (5, 'C9', 'Oak House')
| APCheq (ChequeID, ChequeNo, VendorID) VALUES (30, '000117', 4)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, VendorID, ChequeID, JVID) VALUES (1, 2026, 2, 'AP', 'Chq', 1002, '2026-02-20', -1200.5, 'AP Payment: Cheque 000117', 4, 30, 2)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, CustomerID, PaymentID, JVID) VALUES (1, 2026, 2, 'AR', 'Pmt', 1003, '2026-02-21', 300.125, 'AR Payment: Cash', 5, 9, 3)
| GLHist (GLAccountID, SubAccount1ID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (1, 1, 2026, 1, 'GL', 'JV', 1001, '2026-01-01', 1000, 'Opening', 1)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, VendorID, ChequeID) VALUES (1, 2026, 2, 'AP', 'Chq', 1004, '2026-02-21', -0.125, 'AP Payment: Cash', 77, 78)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (2, 2026, 2, 'GL', 'JV', 1005, '2026-02-01', 5, 'Abroad', 5)
> {"sql":"INSERT INTO {1}"}
|
# Without a currency of the company's own nobody can say which bank is meant.
> {"menu":"General > Bank Book"}
< {"opened":["frmBankBook"]}
> {"state":"frmBankBook"}
< {"state":{"title":"Bank Book","controls":{"cboBank":{"value":"","choices":["","Dollar Account","Main"]},"grdGLHist":{"total":0,
   "columns":[{"caption":"Date"},{"caption":"Payment/Deposit"},{"caption":"Description"},{"caption":"Amount"},
   {"caption":"Balance"}]}},"menus":[{"path":"&Edit > &Refresh"}]}}
> {"close":"frmBankBook"}
> {"sql":"UPDATE Company SET DefaultCurrencyID = 7"}
> {"menu":"General > Bank Book"}
> {"state":"frmBankBook"}
< {"state":{"controls":{"cboBank":{"value":"Main","data":2},"grdGLHist":{"total":4,"active":{"row":3},"rows":[
   {"cells":{"TransDate":"01 Jan 26","Source":"","TransDescription":"Opening","Amount":"1,000.00","Balance":"1,000.00"}},
   {"cells":{"TransDate":"20 Feb 26","Source":"AP Cheque 000117","TransDescription":"AP Payment: Cheque 000117 - Timber & Co (T-1)",
   "Amount":"(1,200.50)","Balance":"(200.50)"}},
   {"cells":{"TransDate":"21 Feb 26","Source":"Deposit","TransDescription":"AR Payment: Cash - Oak House (C9)",
   "Amount":"300.125","Balance":"99.625"}},
   {"cells":{"TransDate":"21 Feb 26","Source":"AP Cheque","TransDescription":"AP Payment: Cash","Amount":"(0.125)",
   "Balance":"99.50"}}]}}}}

# What others post is there after a refresh, which keeps the row.
> {"grid":"frmBankBook.grdGLHist","do":"goto","row":1}
2> {"sql":"INSERT INTO GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount) VALUES (1, 2026, 1, 'GL', 'JV', 1006, '2026-01-01', 50)"}
> {"key":"F5"}
> {"state":"frmBankBook"}
< {"state":{"controls":{"grdGLHist":{"total":5,"active":{"row":2},"rows":["...",{"cells":{"Amount":"50.00","Balance":"1,050.00"}},
   {"cells":{"Source":"AP Cheque 000117","Balance":"(150.50)"}},"..."]}}}}

# Another bank, and none.
> {"set":"frmBankBook.cboBank","value":"Dollar Account"}
> {"state":"frmBankBook"}
< {"state":{"controls":{"grdGLHist":{"total":1,"rows":[{"cells":{"TransDescription":"Abroad","Balance":"5.00"},"active":true}]}}}}
> {"set":"frmBankBook.cboBank","value":""}
> {"state":"frmBankBook"}
< {"state":{"controls":{"grdGLHist":{"total":0}}}}

# From the list of banks it is that bank's.
> {"menu":"General > Banks"}
> {"grid":"frmBanks.grdBank","do":"locate","values":{"BankID":1}}
> {"click":"frmBanks.mnuBankBook"}
> {"state":"frmBankBook"}
< {"state":{"controls":{"cboBank":{"value":"Dollar Account"},"grdGLHist":{"total":1}}}}

# Elsewhere a cheque is a check.
@ --today 2026-03-05 --country "United States"
> {"menu":"General > Bank Book"}
> {"state":"frmBankBook"}
< {"state":{"controls":{"grdGLHist":{"rows":["...",{"cells":{"Source":"AP Check 000117"}},"...",{"cells":{"Source":"AP Check"}}]}}}}
