# What keeps an account, or a subaccount, from being deleted: each reason alone, and all of them in their order.
@ --today 2026-03-05 --country Canada
| GLAccnt | GLAccountID, GLAccount, AccountName, AccountType | 7, '1000', 'Cash', 1
| GLAccnt | GLAccountID, GLAccount, AccountName, AccountType | 8, '2000', 'Payables', 2
| GLActual | GLAccountID, GLYear, ActualBudget, OpeningBal, Amount12 | 8, 2023, 'A', -5, 7
| GLBudget | GLAccountID, GLYear, ActualBudget | 8, 2026, 'B'
| GLHist | GLAccountID, GLYear, GLPeriod, Source, JVNumber, TransDate, Amount | 8, 2026, 1, 'GL', 1001, '2026-01-05', 5
| JVDet | JVID, Seq, GLAccountID | 1, 1, 8
| APInvDet | APInvoiceID, Seq, GLAccountID | 1, 1, 8
| ARInvPmt | ARInvoiceID, PaymentID | 1, 1
| Item | ItemID, ItemNo, ItemDescription, SalesGLAccountID | 1, 'A', 'A', 8
| Tax | TaxID, TaxName, Rate, TaxCode, TaxDescription, TaxGLAccountID | 1, 'T', 5, 'T', 'T', 8
| Currency | CurrencyID, CurrencyName, APGLAccountID, APDiscGLAccountID, ARGLAccountID, ARDiscGLAccountID | 1, 'CAD', 8, 8, 8, 8
| Bank | BankID, BankName | 1, 'B'
> {"sql":"INSERT INTO {1} ({2}) VALUES ({3})"}
|
> {"open":"TfrmGLAccounts"}

# Each alone.
| GLActual | GLAccountID | GL Totals data exists for this account
| GLBudget | GLAccountID | Budget data exists for this account
| GLHist | GLAccountID | GL History exists for this account
| JVDet | GLAccountID | JV(s) exist for this account
| APInvDet | GLAccountID | AP Invoice(s) exist for this account
| ARInvPmt | WriteOffGLAccountID | AR Payment(s) exist for this account
| Item | SalesGLAccountID | Item(s) exist for this account
| Item | COGSGLAccountID | Item(s) exist for this account
| Item | InventoryGLAccountID | Item(s) exist for this account
| Tax | TaxGLAccountID | Tax(s) exist for this account
| Currency | DfltWriteOffGLAccountID | Currency(s) exist for this account
| Currency | APGLAccountID | Currency(s) exist for this account
| Currency | GainLossExchangeGLAccntID | Currency(s) exist for this account
| Currency | APDiscGLAccountID | Currency(s) exist for this account
| Currency | ARGLAccountID | Currency(s) exist for this account
| Currency | ARDiscGLAccountID | Currency(s) exist for this account
| Bank | BankGLAccountID | Bank(s) exist for this account
| Company | DfltSalesGLAccountID | Your Company uses this account (Default Sales GL Account)
| Company | DfltCOGSGLAccountID | Your Company uses this account (Default Cost of Goods Sold GL Account)
| Company | DfltInventoryGLAccountID | Your Company uses this account (Default Inventory GL Account)
> {"sql":"UPDATE {1} SET {2} = 7"}
< {"changed":1}
> {"click":"frmGLAccounts.mnuDelete"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Delete '1000: Cash'?","buttons":["Yes","No"]}}}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete '1000: Cash'...\r{3}"}]}
> {"sql":"UPDATE {1} SET {2} = 8"}
|

# All of them at once: the first that holds is told.
| GLBudget | GLAccountID
| GLHist | GLAccountID
| JVDet | GLAccountID
| APInvDet | GLAccountID
| ARInvPmt | WriteOffGLAccountID
| Item | SalesGLAccountID
| Item | COGSGLAccountID
| Item | InventoryGLAccountID
| Tax | TaxGLAccountID
| Currency | DfltWriteOffGLAccountID
| Currency | APGLAccountID
| Currency | GainLossExchangeGLAccntID
| Currency | APDiscGLAccountID
| Currency | ARGLAccountID
| Currency | ARDiscGLAccountID
| Bank | BankGLAccountID
| Company | DfltSalesGLAccountID
| Company | DfltCOGSGLAccountID
| Company | DfltInventoryGLAccountID
> {"sql":"UPDATE {1} SET {2} = 7"}
|
> {"sql":"UPDATE GLActual SET GLAccountID = 7 WHERE GLAccountID = 8"}

| GLActual | GLAccountID | GL Totals data exists for this account
| GLBudget | GLAccountID | Budget data exists for this account
| GLHist | GLAccountID | GL History exists for this account
| JVDet | GLAccountID | JV(s) exist for this account
| APInvDet | GLAccountID | AP Invoice(s) exist for this account
| ARInvPmt | WriteOffGLAccountID | AR Payment(s) exist for this account
| Item | SalesGLAccountID | Item(s) exist for this account
| Item | COGSGLAccountID | Item(s) exist for this account
| Item | InventoryGLAccountID | Item(s) exist for this account
| Tax | TaxGLAccountID | Tax(s) exist for this account
| Currency | DfltWriteOffGLAccountID | Currency(s) exist for this account
| Currency | APGLAccountID | Currency(s) exist for this account
| Currency | GainLossExchangeGLAccntID | Currency(s) exist for this account
| Currency | APDiscGLAccountID | Currency(s) exist for this account
| Currency | ARGLAccountID | Currency(s) exist for this account
| Currency | ARDiscGLAccountID | Currency(s) exist for this account
| Bank | BankGLAccountID | Bank(s) exist for this account
| Company | DfltSalesGLAccountID | Your Company uses this account (Default Sales GL Account)
| Company | DfltCOGSGLAccountID | Your Company uses this account (Default Cost of Goods Sold GL Account)
| Company | DfltInventoryGLAccountID | Your Company uses this account (Default Inventory GL Account)
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"text":"Unable to delete '1000: Cash'...\r{3}"}]}
> {"sql":"UPDATE {1} SET {2} = 8"}
|

> {"sql":"INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount3) VALUES (7, 2025, 'A', 4.5, -4.5)"}
> {"sql":"INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget) VALUES (7, 2026, 'A')"}
# No leaves all as it was; Yes takes the totals that come to nothing with the account.
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"No"}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
> {"sql":"SELECT count(*) FROM GLActual"}
< {"rows":[[3]]}
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT GLAccountID FROM GLActual"}
< {"rows":[[8]]}
> {"sql":"SELECT GLAccountID FROM GLAccnt"}
< {"rows":[[8]]}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"GLAccount":"2000"},"active":true}]}}}}

# Subaccounts, on each level.
| 1
| 2
| 3
> {"sql":"INSERT INTO GLAcSub{1} (SubAccountID, SubAccount, SubAccountName) VALUES (3, 'N', 'North')"}
> {"sql":"UPDATE GLActual SET SubAccount{1}ID = 4"}
|

| GLActual |  | GL Totals data exists for this subaccount
| GLBudget |  | Budget data exists for this subaccount
| GLHist |  | GL History exists for this subaccount
| JVDet |  | JV(s) exist for this subaccount
| APInvDet |  | AP Invoice(s) exist for this subaccount
| ARInvPmt | WriteOff | AR Payment(s) exist for this subaccount
| Item | Inventory | Item(s) exist for this subaccount
| Item | COGS | Item(s) exist for this subaccount
| Item | Sales | Item(s) exist for this subaccount
> {"set":"frmGLAccounts.cboSubaccount","value":"Subaccount 1"}
> {"sql":"UPDATE {1} SET {2}SubAccount1ID = 3"}
> {"click":"frmGLAccounts.mnuDelete"}
< {"waiting":{"dialog":{"text":"Delete 'N: North'?","buttons":["Yes","No"]}}}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete 'N: North'...\r{3}"}]}
> {"sql":"UPDATE {1} SET {2}SubAccount1ID = 4"}
> {"set":"frmGLAccounts.cboSubaccount","value":"Subaccount 2"}
> {"sql":"UPDATE {1} SET {2}SubAccount2ID = 3"}
> {"click":"frmGLAccounts.mnuDelete"}
< {"waiting":{"dialog":{"text":"Delete 'N: North'?","buttons":["Yes","No"]}}}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete 'N: North'...\r{3}"}]}
> {"sql":"UPDATE {1} SET {2}SubAccount2ID = 4"}
> {"set":"frmGLAccounts.cboSubaccount","value":"Subaccount 3"}
> {"sql":"UPDATE {1} SET {2}SubAccount3ID = 3"}
> {"click":"frmGLAccounts.mnuDelete"}
< {"waiting":{"dialog":{"text":"Delete 'N: North'?","buttons":["Yes","No"]}}}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete 'N: North'...\r{3}"}]}
> {"sql":"UPDATE {1} SET {2}SubAccount3ID = 4"}
|

# In their order, and then the delete.
| GLActual | 
| GLBudget | 
| GLHist | 
| JVDet | 
| APInvDet | 
| ARInvPmt | WriteOff
| Item | Inventory
| Item | COGS
| Item | Sales
> {"sql":"UPDATE {1} SET {2}SubAccount2ID = 3"}
|
> {"set":"frmGLAccounts.cboSubaccount","value":"Subaccount 2"}

| GLActual |  | GL Totals data exists for this subaccount
| GLBudget |  | Budget data exists for this subaccount
| GLHist |  | GL History exists for this subaccount
| JVDet |  | JV(s) exist for this subaccount
| APInvDet |  | AP Invoice(s) exist for this subaccount
| ARInvPmt | WriteOff | AR Payment(s) exist for this subaccount
| Item | Inventory | Item(s) exist for this subaccount
| Item | COGS | Item(s) exist for this subaccount
| Item | Sales | Item(s) exist for this subaccount
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"text":"Unable to delete 'N: North'...\r{3}"}]}
> {"sql":"UPDATE {1} SET {2}SubAccount2ID = 4"}
|
> {"sql":"INSERT INTO GLActual (GLAccountID, SubAccount2ID, GLYear, ActualBudget, Amount1) VALUES (8, 3, 2024, 'A', 0)"}
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT SubAccount2ID FROM GLActual"}
< {"rows":[[4]]}
> {"sql":"SELECT count(*) FROM GLAcSub2"}
< {"rows":[[0]]}
> {"sql":"SELECT count(*) FROM GLAcSub1"}
< {"rows":[[1]]}

# Nothing to delete, nothing to edit.
> {"click":"frmGLAccounts.mnuDelete"}
< {"ok":false,"messages":[],"waiting":null}
> {"key":"Enter"}
< {"ok":false,"messages":[],"opened":[]}
