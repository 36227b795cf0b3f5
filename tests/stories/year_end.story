# Year end: what refuses it, what it carries forward, closing, and opening the year again.
#
# That another process holds the totals no screen can do for longer than a command: the tests of the ledger do.
@ --today 2026-12-31 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '2000', 'Loan', 2)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (3, '4000', 'Sales', 3)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (4, '5000', 'Rent', 4)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, RetainedEarnings) VALUES (5, '3000', 'Stock', 5, false)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, RetainedEarnings) VALUES (6, '3900', 'Kept', 5, true)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"General > Your Company"}

# What is unsaved comes first.
> {"set":"frmCompany.editPhone","value":"555"}
> {"click":"frmCompany.btnYearEnd"}
< {"waiting":{"dialog":{"kind":"confirmation","buttons":["Yes","No"],"text":"Changes must be saved before year-end can proceed...\rSave now?"}}}
> {"answer":"No"}
< {"ok":false,"messages":[],"opened":[],"finished":[{"aborted":true}]}
> {"sql":"SELECT Phone FROM Company"}
< {"rows":[[null]]}
> {"set":"frmCompany.editCompanyName","value":""}
> {"click":"frmCompany.btnYearEnd"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"text":"Field 'Company Name' must have a value"}],"opened":[]}
> {"set":"frmCompany.editCompanyName","value":"Acme"}
> {"click":"frmCompany.btnYearEnd"}
> {"answer":"Yes"}
< {"opened":["frmYearEnd"],"waiting":{"modal":"frmYearEnd"}}
> {"sql":"SELECT Phone FROM Company"}
< {"rows":[["555"]]}
> {"state":"frmYearEnd"}
< {"state":{"title":"Year-End","default":"btnOK","controls":{"lblProcess":{"caption":""}}}}
> {"click":"frmYearEnd.btnCancel"}
< {"ok":true,"messages":[],"closed":["frmYearEnd"],"waiting":null}

# Unposted documents of the year refuse it, in their order, and those of another year do not; the totals are free again.
| IAdjust | inventory adjustments | AdjustmentID | 1 | 2
| ARPmt | AR payments | PaymentID | 1 | 2
| ARInv | AR invoices | ARInvoiceID, InvoiceNo | 1, '1' | 2, '2'
| APCheq | AP payments | ChequeID | 1 | 2
| APInv | AP invoices | APInvoiceID, InvoiceNo | 1, '1' | 2, '2'
| JV | JVs | JVID | 1 | 2
> {"sql":"INSERT INTO {1} ({3}, GLYear, Posted) VALUES ({4}, 2026, false)"}
> {"sql":"INSERT INTO {1} ({3}, GLYear, Posted) VALUES ({5}, 2027, false)"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to run year-end...\rUnposted {2} exist for year to be closed"}],
   "closed":["frmYearEnd"],"waiting":null,"finished":[{"command":"frmYearEnd.btnOK","ok":false},{"command":"frmCompany.btnYearEnd","ok":true}]}
2> {"sql":"UPDATE GLActual SET Amount1 = 0"}
|
| IAdjust
| ARPmt
| ARInv
| APCheq
| APInv
| JV
> {"sql":"UPDATE {1} SET Posted = true WHERE GLYear = 2026"}
|
| false | No retained earnings account found.\r\rPlease set up a GL Account of type \"Equity\" with \"Retained Earnings\" selected
| true | Multiple retained earnings accounts found.\r\rThere must be only one GL Account of type \"Equity\" with \"Retained Earnings\" selected
> {"sql":"UPDATE GLAccnt SET RetainedEarnings = {1} WHERE AccountType = 5"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to run year-end...\r{2}"}],"closed":["frmYearEnd"],"waiting":null}
|
> {"sql":"UPDATE GLAccnt SET RetainedEarnings = false WHERE GLAccountID = 5"}
# The flag on an account that is none of equity does not count.
> {"sql":"UPDATE GLAccnt SET RetainedEarnings = true WHERE GLAccountID = 1"}

# A year without totals has nothing to carry, and may be closed.
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
< {"ok":true,"closed":["frmYearEnd"],"waiting":{"dialog":{"kind":"confirmation","buttons":["Yes","No"],"default":"No",
   "text":"Year End: Permanently close 2026?\r\rGL balances have been carried forward, etc. so you can now print financial statements for 2026.  You can leave 2026 open if there will be more transactions."}}}
> {"answer":"No"}
> {"sql":"SELECT count(*) FROM GLActual"}
< {"rows":[[0]]}
> {"state":"frmCompany"}
< {"state":{"cursor":"browse","controls":{"editFiscalYear":{"value":"2026"}}}}

# A loss of 150. What is carried: with subaccounts and without, where the next year has a row already and where not.
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'N', 'North')
| GLAcSub3 (SubAccountID, SubAccount, SubAccountName) VALUES (3, 'R', 'Retail')
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount1, Amount12) VALUES (1, 2026, 'A', 1000.0001, 500, -100)
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, OpeningBal, Amount6) VALUES (1, 1, 2026, 'A', 50, -50)
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, OpeningBal, Amount1) VALUES (1, 1, 2027, 'A', 99, 7)
| GLActual (GLAccountID, SubAccount3ID, GLYear, ActualBudget, Amount2, Amount3) VALUES (1, 3, 2026, 'A', 5, -5)
| GLActual (GLAccountID, SubAccount1ID, SubAccount3ID, GLYear, ActualBudget, Amount2) VALUES (2, 1, 3, 2026, 'A', -750.0001)
| GLActual (GLAccountID, GLYear, ActualBudget, Amount1) VALUES (3, 2026, 'A', -300)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount1) VALUES (3, 2027, 'A', 8, -20)
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount1) VALUES (4, 1, 2026, 'A', 450)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal) VALUES (5, 2026, 'A', -500)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal) VALUES (6, 2026, 'A', -200)
| GLActual (GLAccountID, SubAccount3ID, GLYear, ActualBudget, OpeningBal) VALUES (6, 3, 2026, 'A', -100)
| GLActual (GLAccountID, SubAccount3ID, GLYear, ActualBudget, OpeningBal, Amount3) VALUES (6, 3, 2027, 'A', -1, 13)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal) VALUES (2, 2025, 'A', 4)
> {"sql":"INSERT INTO {1}"}
|
# A second run changes nothing, also where the first one added rows.
| 1
| 2
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
< {"ok":true,"messages":[]}
> {"answer":"No"}
> {"sql":"SELECT GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, ActualBudget, OpeningBal, Amount1, Amount3 FROM GLActual WHERE GLYear = 2027 ORDER BY GLAccountID, SubAccount1ID, SubAccount3ID"}
< {"rows":[[1,null,null,null,"A",1400.0001,null,null],[1,1,null,null,"A",0,7,null],[2,1,null,3,"A",-750.0001,null,null],
   [3,null,null,null,"A",0,-20,null],[5,null,null,null,"A",-500,null,null],[6,null,null,null,"A",-150,null,null],
   [6,null,null,3,"A",0,null,13]]}
|
> {"sql":"SELECT count(*) FROM GLActual"}
< {"rows":[[17]]}

# Late vouchers make it a profit: run again, and close. What the screen sets is not saved yet.
> {"sql":"UPDATE GLActual SET Amount12 = -200 WHERE GLAccountID = 3 AND GLYear = 2026"}
> {"sql":"UPDATE GLActual SET Amount12 = 100 WHERE GLAccountID = 1 AND GLYear = 2026 AND SubAccount1ID IS NULL AND SubAccount3ID IS NULL"}
| DefaultPeriodPP | 12
| DefaultPeriodYYYY | 26
| EPeriodFromPP | 1
| EPeriodFromYYYY | 26
| EPeriodToPP | 6
| EPeriodToYYYY | 27
> {"set":"frmCompany.edit{1}","value":"{2}"}
|
> {"options":{"progress":true}}
> {"click":"frmCompany.btnYearEnd"}
> {"answer":"Yes"}
> {"click":"frmYearEnd.btnOK"}
< {"progress":[{"text":"Checking data..."},{"text":"GL: Carry forward balances, etc."},{"done":1,"total":9},"...",
   {"text":"GL: Carry forward balances, etc.","done":9,"total":9}]}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT GLAccountID, OpeningBal FROM GLActual WHERE GLYear = 2027 AND OpeningBal <> 0 ORDER BY GLAccountID"}
< {"rows":[[1,1600.0001],[2,-750.0001],[5,-500],[6,-350]]}
> {"state":"frmCompany"}
< {"state":{"cursor":"edit","controls":{"editFiscalYear":{"value":"2027"},"editDefaultPeriodPP":{"value":"1"},"editDefaultPeriodYYYY":{"value":"2027"},
   "editWPeriodFromPP":{"value":"1"},"editWPeriodFromYYYY":{"value":"2027"},"editWPeriodToPP":{"value":"12"},"editWPeriodToYYYY":{"value":"2027"},
   "editEPeriodFromPP":{"value":""},"editEPeriodFromYYYY":{"value":""},"editEPeriodToPP":{"value":""},"editEPeriodToYYYY":{"value":""}}}}
> {"sql":"SELECT FiscalYear FROM Company"}
< {"rows":[[2026]]}
> {"click":"frmCompany.btnOK"}
< {"ok":true,"closed":["frmCompany"]}
> {"sql":"SELECT FiscalYear, DefaultPeriodYYYY, DefaultPeriodPP, WPeriodFromYYYY, WPeriodFromPP, WPeriodToYYYY, WPeriodToPP, EPeriodFromYYYY, EPeriodToPP FROM Company"}
< {"rows":[[2027,2027,1,2027,1,2027,12,null,null]]}

# Open it again, which needs no year end; forward only by it. A default period that is not set stays so.
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editFiscalYear","value":"26"}
> {"set":"frmCompany.editDefaultPeriodPP","value":""}
> {"set":"frmCompany.editDefaultPeriodYYYY","value":""}
> {"click":"frmCompany.btnOK"}
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editFiscalYear","value":"27"}
< {"ok":false,"messages":[{"text":"Fiscal Year cannot be changed forward by typing here...\rJournal Voucher(s) exist.\rPress Esc to undo.\rUse the Year-End button to move the year forward"}]}
> {"key":"Esc"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"Yes"}
> {"state":"frmCompany"}
< {"state":{"controls":{"editFiscalYear":{"value":"2027"},"editDefaultPeriodPP":{"value":""},"editDefaultPeriodYYYY":{"value":""}}}}
> {"close":"frmCompany"}
> {"answer":"No"}
> {"sql":"SELECT FiscalYear FROM Company"}
< {"rows":[[2026]]}

# Behind the last year there is none; a year that cannot be is refused before anything is carried.
> {"sql":"UPDATE Company SET FiscalYear = 2050"}
> {"menu":"General > Your Company"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"Yes"}
> {"click":"frmCompany.btnOK"}
< {"ok":false,"messages":[{"text":"Fiscal Year must be between 1989 and 2050"}],"focus":"frmCompany.editFiscalYear"}
> {"click":"frmCompany.btnCancel"}
> {"sql":"UPDATE Company SET FiscalYear = 0"}
> {"menu":"General > Your Company"}
> {"click":"frmCompany.btnYearEnd"}
< {"ok":false,"messages":[{"text":"Fiscal Year must be between 1989 and 2050"}],"focus":"frmCompany.editFiscalYear","opened":[]}
> {"sql":"DELETE FROM Company"}
> {"click":"frmCompany.btnCancel"}

# While somebody edits the settings the year can be carried forward, and is closed when they are done.
> {"sql":"INSERT INTO Company (CompanyNo, CompanyName, FiscalYear, BackupOnExit) VALUES (1, 'Acme', 2026, 2)"}
> {"menu":"General > Your Company"}
2> {"menu":"General > Your Company"}
2> {"set":"frmCompany.editPhone","value":"556"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"Yes"}
< {"waiting":{"dialog":{"buttons":["Yes","No"]}}}
> {"answer":"No"}
< {"ok":false,"messages":[],"waiting":null}
2> {"click":"frmCompany.btnCancel"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"Yes"}
> {"click":"frmCompany.btnOK"}
> {"sql":"SELECT FiscalYear FROM Company"}
< {"rows":[[2027]]}

# Whoever still has the year on the screen that somebody else has closed meanwhile does not close the next one.
> {"sql":"UPDATE Company SET FiscalYear = 2026"}
> {"menu":"General > Your Company"}
2> {"menu":"General > Your Company"}
2> {"click":"frmCompany.btnYearEnd"}
2> {"click":"frmYearEnd.btnOK"}
2> {"answer":"Yes"}
2> {"click":"frmCompany.btnOK"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"text":"A record you are trying to edit or delete on 'tblCompany' has been changed or deleted since last retrieved.\rData will now be refreshed."}]}
> {"state":"frmCompany"}
< {"state":{"cursor":"browse","controls":{"editFiscalYear":{"value":"2027"}}}}
> {"sql":"SELECT FiscalYear FROM Company"}
< {"rows":[[2027]]}
