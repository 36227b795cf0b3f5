# A new company is set up: the wizard comes while nothing was entered, page by page, writes at Finish and not before.
#
# Words that no story can hear: the store's own at Finish, of tables that another program writes to for longer than any
# lock is waited for.
@ empty --today 2026-03-05 --country Canada --date-format MM/dd/yyyy
< {"ready":true,"messages":[],"opened":["frmGettingStarted"],"waiting":{"modal":"frmGettingStarted"},
   "focus":"frmGettingStarted.editCompanyName"}
> {"state":"frmGettingStarted"}
< {"state":{"title":"Getting Started","default":"btnNext","controls":{
   "stpPages":{"page":0,"pages":["Your company","First month of the books","Currency and tax","Accounts","Bank",
   "Period limits","Ready"]},"editCompanyName":{"value":""},"editCurrencyName":{"visible":false},
   "cboCountry":{"value":"Canada","choices":["Australia","Canada","New Zealand","South Africa","United Kingdom",
   "United States","Other"]},"btnBack":{"enabled":false},"btnFinish":{"enabled":false}}}}
> {"set":"frmGettingStarted.editBankName","value":"x"}
< {"ok":false,"error":{"text":"'frmGettingStarted.editBankName' is not visible"}}
> {"menu":"GL > JVs"}
< {"ok":false}

# Your company.
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"kind":"error","text":"Field 'Company Name' must have a value"}],
   "focus":"frmGettingStarted.editCompanyName"}
> {"set":"frmGettingStarted.editCompanyName","value":"12345678901234567890123456789012345678901"}
< {"ok":false}
> {"key":"Esc"}
> {"set":"frmGettingStarted.editCompanyName","value":"sample data 2"}
> {"key":"Enter"}
< {"ok":false,"messages":[{"kind":"error",
   "text":"Company Name 'Sample Data' is reserved for system generated sample data"}],
   "focus":"frmGettingStarted.editCompanyName"}
> {"set":"frmGettingStarted.editCompanyName","value":"Pine Street Books"}
| Accounts | GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1', 'Mine', 1) | GLAccnt
| Banks | Bank (BankID, BankName) VALUES (1, 'Mine') | Bank
| Taxes | Tax (TaxID, TaxName, Rate, TaxCode, TaxDescription, TaxGLAccountID) VALUES (1, 'T', 1, 'T', 'T', 1) | Tax
> {"sql":"INSERT INTO {2}"}
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"kind":"error","text":"{1} have been entered in this company already...\rOnly an empty company can be set up here.\r\rEnter its settings yourself: menu File | General | Your Company"}]}
> {"sql":"DELETE FROM {3}"}
|
> {"sql":"INSERT INTO Company (CompanyName) VALUES ('Theirs')"}
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"kind":"error","text":"This company has been set up already"}]}
> {"sql":"DELETE FROM Company"}

# What the countries suggest: the first month, its year, the currency, the tax, the bank.
| Australia | July | 2025 | Australian Dollar | Yes | GST | 10 | Cheque Account
| Canada | January | 2026 | Canadian Dollar | Yes | GST | 5 | Chequing Account
| New Zealand | April | 2025 | New Zealand Dollar | Yes | GST | 15 | Cheque Account
| South Africa | March | 2026 | South African Rand | Yes | VAT | 15 | Cheque Account
| United Kingdom | April | 2025 | British Pound | Yes | VAT | 20 | Current Account
| United States | January | 2026 | US Dollar | No | Sales Tax |  | Checking Account
| Other | January | 2026 |  | No | Sales Tax |  | Bank Account
> {"set":"frmGettingStarted.cboCountry","value":"{1}"}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"cboFirstMonth":{"value":"{2}"},"editFirstYear":{"value":"{3}"},
   "editCurrencyName":{"value":"{4}"},"chkTax":{"value":"{5}"},"editTaxName":{"value":"{6}"},
   "editTaxRate":{"value":"{7}"},"editBankName":{"value":"{8}"}}}}
|
> {"click":"frmGettingStarted.btnNext"}
< {"focus":"frmGettingStarted.cboFirstMonth"}

# The books.
| 2051
| -1
| x
> {"set":"frmGettingStarted.editFirstYear","value":"{1}"}
< {"ok":false,"messages":[{"text":"Enter the year with two or four digits, up to 2050"}],"focus":"frmGettingStarted.editFirstYear"}
> {"key":"Esc"}
|
| 26 | 2026
| 0 | 2000
| 99 | 1999
> {"set":"frmGettingStarted.editFirstYear","value":"{1}"}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"editFirstYear":{"value":"{2}","data":{2}}}}}
|
| 100 | January
| 1988 | January
| 2050 | July
> {"set":"frmGettingStarted.editFirstYear","value":"{1}"}
> {"set":"frmGettingStarted.cboFirstMonth","value":"{2}"}
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"text":"Fiscal Year must be between 1989 and 2050"}],
   "focus":"frmGettingStarted.editFirstYear"}
|
> {"set":"frmGettingStarted.editFirstYear","value":""}
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"text":"Field 'Year' must have a value"}],"focus":"frmGettingStarted.editFirstYear"}
> {"set":"frmGettingStarted.editFirstYear","value":"2025"}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"optFiscalYear":{"visible":true,"value":"2026","choices":["2025","2026"]},
   "lblCalendar":{"caption":"Fiscal year 2026: Period 1 is July 2025, period 12 is June 2026."}}}}
> {"set":"frmGettingStarted.optFiscalYear","value":"2025"}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{
   "lblCalendar":{"caption":"Fiscal year 2025: Period 1 is July 2025, period 12 is June 2026."}}}}
> {"click":"frmGettingStarted.btnNext"}
< {"focus":"frmGettingStarted.editCurrencyName"}

# Currency and tax.
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"text":"Field 'Currency Name' must have a value"}],
   "focus":"frmGettingStarted.editCurrencyName"}
> {"set":"frmGettingStarted.editCurrencyName","value":"Euro"}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"editTaxName":{"enabled":false},"editTaxCode":{"enabled":false}}}}
> {"set":"frmGettingStarted.chkTax","value":true}
| editTaxRate |  | Field 'Rate' must have a value
| editTaxRate | 100.5 | Rate must be between 0 and 100
| editTaxRate | -1 | Rate must be between 0 and 100
| editTaxCode |  | Field 'Code' must have a value
| editTaxName |  | Field 'Tax Name' must have a value
> {"set":"frmGettingStarted.{1}","value":"{2}"}
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"text":"{3}"}],"focus":"frmGettingStarted.{1}"}
|
> {"set":"frmGettingStarted.editTaxName","value":"MwSt"}
> {"set":"frmGettingStarted.editTaxCode","value":"m"}
> {"set":"frmGettingStarted.editTaxRate","value":"19"}
> {"key":"Enter"}
< {"focus":"frmGettingStarted.optChart"}

# Accounts and the bank.
> {"set":"frmGettingStarted.optChart","value":"Service"}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"lstAccounts":{"choices":["1000  Petty Cash","1010  Bank Account","..."]}}}}
> {"click":"frmGettingStarted.btnNext"}
> {"set":"frmGettingStarted.editBankName","value":" "}
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"text":"Field 'Bank Name' must have a value"}],"focus":"frmGettingStarted.editBankName"}
> {"set":"frmGettingStarted.editBankName","value":"Stadtsparkasse"}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"lblBankAccount":{"caption":"Its account: 1010 Bank Account"}}}}
> {"click":"frmGettingStarted.btnNext"}
< {"focus":"frmGettingStarted.editWPeriodFromPP"}

# Period limits.
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"editWPeriodFromPP":{"value":"1"},"editWPeriodFromYYYY":{"data":2025},
   "editWPeriodToPP":{"value":"12"},"editWPeriodToYYYY":{"data":2025},"editEPeriodFromPP":{"value":""},
   "editEPeriodToYYYY":{"value":""}}}}
| WPeriodFromYYYY | 2025 | Warn Before Period invalid...\rEnter year as 2 digits
| WPeriodToYYYY | 2025 | Warn After Period invalid...\rEnter year as 2 digits
| EPeriodFromYYYY | 2025 | Error Before Period invalid...\rEnter year as 2 digits
| EPeriodToYYYY | 2025 | Error After Period invalid...\rEnter year as 2 digits
| EPeriodToPP | 13 | Period must be between 1 and 12
> {"set":"frmGettingStarted.edit{1}","value":"{2}"}
< {"ok":false,"messages":[{"text":"{3}"}],"focus":"frmGettingStarted.edit{1}"}
> {"key":"Esc"}
|
| EPeriodToPP | 3 | Enter both the period and its year, or neither | EPeriodToYYYY
| EPeriodToYYYY | 24 | No period could be used...\rThe last one allowed is before the fiscal year 2025 | EPeriodToPP
| EPeriodFromYYYY | 27 | Enter both the period and its year, or neither | EPeriodFromPP
| EPeriodFromPP | 4 | The last period is before the first | EPeriodToPP
> {"set":"frmGettingStarted.edit{1}","value":"{2}"}
> {"click":"frmGettingStarted.btnNext"}
< {"ok":false,"messages":[{"text":"{3}"}],"focus":"frmGettingStarted.edit{4}"}
|
> {"set":"frmGettingStarted.editEPeriodToYYYY","value":"26"}
> {"set":"frmGettingStarted.editEPeriodFromPP","value":""}
> {"set":"frmGettingStarted.editEPeriodFromYYYY","value":""}
> {"set":"frmGettingStarted.editWPeriodToPP","value":"11"}
> {"click":"frmGettingStarted.btnNext"}
< {"focus":"frmGettingStarted.btnFinish"}

# Back and forth keeps what was typed; another fiscal year suggests other limits.
> {"click":"frmGettingStarted.btnBack"}
< {"focus":"frmGettingStarted.editWPeriodFromPP"}
> {"click":"frmGettingStarted.btnNext"}
> {"state":"frmGettingStarted"}
< {"state":{"default":"btnFinish","controls":{"btnNext":{"enabled":false},"lblSummary":{"caption":
   "Company: Pine Street Books\rFiscal year: 2025. Period 1 is July 2025, period 12 is June 2026.\rHome currency: Euro\rTax on sales: MwSt 19%\rChart of accounts: Service, 48 accounts\rBank: Stadtsparkasse\rWarning for a period before 1/25 or after 11/25\rError for a period after 3/26\rNew documents: period 9/25, until you change it in Your Company"},
   "lblNoPrinter":{"visible":true,"caption":"If you have no printer: pages are laid out for one, so a printer must be defined, though not necessarily attached. Install any printer driver, or one that prints into a file; then reports can be previewed, printed and exported. When you are asked whether you have a printer installed, answer Yes."}}}}

# Nothing is written yet, and Cancel leaves it so; the wizard comes again at the next start.
> {"click":"frmGettingStarted.btnCancel"}
< {"closed":["frmGettingStarted"],"waiting":null}
| Company
| GLAccnt
| Currency
| Bank
| Tax
> {"sql":"SELECT COUNT(*) N FROM {1}"}
< {"rows":[[0]]}
|
> {"menu":"GL > Accounts"}
< {"opened":["frmGLAccounts"]}
> {"close":"frmGLAccounts"}
= settings/Quillon.ini ["[Companies]\nPine Street Books={folder}/company\n"]
@ empty --today 2026-03-05 --country Kenya --date-format MM/dd/yyyy
< {"waiting":{"modal":"frmGettingStarted"}}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"editCompanyName":{"value":""},"cboCountry":{"value":"Other"}}}}
> {"key":"Esc"}
< {"closed":["frmGettingStarted"],"waiting":null}

# Entered by its name it has that to begin with. From the first page to Finish by Enter alone.
> {"click":"frmQuillon.mnuCompany1"}
< {"opened":["frmGettingStarted"],"waiting":{"modal":"frmGettingStarted"}}
> {"state":"frmGettingStarted"}
< {"state":{"controls":{"editCompanyName":{"value":"Pine Street Books"}}}}
> {"set":"frmGettingStarted.cboCountry","value":"United States"}
> {"key":"Enter"}
> {"key":"Enter"}
> {"key":"Enter"}
> {"set":"frmGettingStarted.optChart","value":"Manufacturing"}
> {"key":"Enter"}
> {"key":"Enter"}
> {"key":"Enter"}
< {"focus":"frmGettingStarted.btnFinish"}

# Somebody else was faster: nothing is mixed with what they wrote.
> {"sql":"INSERT INTO Bank (BankID, BankName) VALUES (7, 'Theirs')"}
> {"click":"frmGettingStarted.btnFinish"}
< {"ok":false,"messages":[{"kind":"error"}],"waiting":{"modal":"frmGettingStarted"},"finished":[{"ok":false}]}
> {"sql":"SELECT COUNT(*) N FROM GLAccnt"}
< {"rows":[[0]]}
> {"sql":"DELETE FROM Bank"}
> {"key":"Enter"}
< {"messages":[],"closed":["frmGettingStarted"],"waiting":null,
   "finished":[{"command":"frmGettingStarted.btnFinish","ok":true},{"command":"frmQuillon.mnuCompany1","ok":true}]}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Pine Street Books"}}}}
> {"sql":"SELECT CompanyName, FiscalYear, DefaultPeriodYYYY, DefaultPeriodPP, WPeriodFromYYYY, WPeriodFromPP, WPeriodToYYYY, WPeriodToPP, EPeriodFromYYYY, EPeriodToPP, DefaultCurrencyID, DfltTax1ID, ApplicationVersion, BackupOnExit FROM Company"}
< {"rows":[["Pine Street Books",2026,null,null,2026,1,2026,12,null,null,1,null,"2017.6",null]]}
> {"sql":"SELECT CurrencyName, ExchangeRate, AR.AccountName, AP.AccountName, G.AccountName, W.AccountName FROM Currency C INNER JOIN GLAccnt AR ON C.ARGLAccountID = AR.GLAccountID INNER JOIN GLAccnt AP ON C.APGLAccountID = AP.GLAccountID INNER JOIN GLAccnt G ON C.GainLossExchangeGLAccntID = G.GLAccountID INNER JOIN GLAccnt W ON C.DfltWriteOffGLAccountID = W.GLAccountID"}
< {"rows":[["US Dollar",null,"Accounts Receivable","Accounts Payable","Gain or Loss on Exchange","Bad Debts"]]}
> {"sql":"SELECT BankName, AccountName, CurrencyID FROM Bank B INNER JOIN GLAccnt G ON B.BankGLAccountID = G.GLAccountID"}
< {"rows":[["Checking Account","Checking Account",1]]}
> {"sql":"SELECT S.AccountName, G.AccountName, I.AccountName FROM Company C INNER JOIN GLAccnt S ON C.DfltSalesGLAccountID = S.GLAccountID INNER JOIN GLAccnt G ON C.DfltCOGSGLAccountID = G.GLAccountID INNER JOIN GLAccnt I ON C.DfltInventoryGLAccountID = I.GLAccountID"}
< {"rows":[["Sales","Cost of Goods Sold","Finished Goods"]]}
> {"sql":"SELECT GLAccount, AccountType FROM GLAccnt WHERE RetainedEarnings = true"}
< {"rows":[["3900",5]]}
> {"sql":"SELECT COUNT(*) N FROM Tax"}
< {"rows":[[0]]}

# A company that is set up is entered at once.
@ empty --country Canada --date-format MM/dd/yyyy
< {"waiting":null,"opened":[],"messages":[]}
