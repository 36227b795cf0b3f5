# A bookkeeper brings books over from another program, by the steps of the manual's pages 111 and 112: the chart made
# one's own, the opening voucher, a month from a file, posting, comparing, and a mistake put right.
@ empty --today 2026-03-05 --country Canada --date-format MM/dd/yyyy
> {"set":"frmGettingStarted.editCompanyName","value":"Pine Street Books"}
> {"click":"frmGettingStarted.btnNext"}
> {"click":"frmGettingStarted.btnNext"}
> {"click":"frmGettingStarted.btnNext"}
> {"set":"frmGettingStarted.optChart","value":"Service"}
> {"click":"frmGettingStarted.btnNext"}
> {"click":"frmGettingStarted.btnNext"}
> {"click":"frmGettingStarted.btnNext"}
> {"click":"frmGettingStarted.btnFinish"}
< {"ok":true,"messages":[],"closed":["frmGettingStarted"],"waiting":null}

# An account that is not needed goes, unless something is tied to it; that one is renamed.
> {"menu":"GL > Accounts"}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"6600"}}
> {"click":"frmGLAccounts.mnuDelete"}
< {"waiting":{"dialog":{"text":"Delete '6600: Training'?"}}}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"1010"}}
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"text":"Unable to delete '1010: Chequing Account'...\rBank(s) exist for this account"}]}
> {"key":"Enter"}
< {"opened":["frmGLAccount"]}
> {"set":"frmGLAccount.editGLAccount","value":"102"}
> {"set":"frmGLAccount.editAccountName","value":"Credit Union"}
> {"click":"frmGLAccount.btnOK"}
> {"key":"Ctrl+N"}
> {"set":"frmGLAccount.editGLAccount","value":"155"}
> {"set":"frmGLAccount.editAccountName","value":"Delivery Van"}
> {"set":"frmGLAccount.radAccountType","value":"Asset"}
> {"click":"frmGLAccount.btnOK"}
< {"ok":true,"closed":["frmGLAccount"]}

# The opening voucher: one amount was left out, and the line under the grid says how much is missing.
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editGLPeriod","value":"1"}
> {"set":"frmJV.editGLYear","value":"26"}
> {"set":"frmJV.editTransDate","value":"1/1/26"}
> {"set":"frmJV.editTransDescription","value":"Opening balances"}
| 0 | 102 | 4,200.00
| 1 | 1100 | 1850
| 2 | 155 | 18000.00
| 3 | 2000 | 900-
| 4 | 2500 | (6,000)
| 5 | 3000 | -10000
> {"click":"frmJV.btnNew"}
> {"set":"frmJV.grdJVDet[{1}].GLAccount","value":"{2}"}
> {"set":"frmJV.grdJVDet[{1}].GLAmount","value":"{3}"}
|
> {"click":"frmJV.btnOKNew"}
< {"ok":false,"messages":[{"text":"Debits and Credits are out of balance"}]}
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 24,050.00   Credits: 16,900.00CR   Diff: 7,150.00CR"}}}}
> {"click":"frmJV.btnNew"}
> {"set":"frmJV.grdJVDet[6].GLAccount","value":"3900"}
> {"set":"frmJV.grdJVDet[6].GLAmount","value":"-7150"}
> {"click":"frmJV.btnOKNew"}
< {"ok":true,"messages":[],"focus":"frmJV.editGLPeriod"}

# The change of a month, out of a spreadsheet; two amounts of it were exchanged.
= january.txt ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\r\n102\t\t\t\t2100.50\r\n1100\t\t\t\t-350\r\n4000\t\t\t\t-3000\r\n6100\t\t\t\t49.5\r\n6700\t\t\t\t1200\r\n"]
> {"set":"frmJV.editTransDate","value":"1/31/26"}
> {"set":"frmJV.editTransDescription","value":"January"}
> {"click":"frmJV.mnuImportJVData"}
> {"set":"frmImportJVData.editFileName","value":"{folder}/january.txt"}
> {"click":"frmImportJVData.btnOK"}
< {"closed":["frmImportJVData"]}
> {"click":"frmJV.btnOK"}
< {"ok":true,"closed":["frmJV"]}
> {"click":"frmJVs.mnuPost"}
> {"state":"frmJVsPost"}
< {"state":{"controls":{"lblRecordCount":{"caption":"2 JV(s) to be posted"}}}}
> {"click":"frmJVsPost.btnOK"}
< {"ok":true,"messages":[]}

# What the old books say is compared account by account; the month is unposted, put right and posted again.
> {"menu":"GL > Totals"}
> {"click":"frmGLBalances.mnuFilter"}
> {"set":"frmGLBalancesFilter.editGLYear","value":"26"}
> {"click":"frmGLBalancesFilter.btnOK"}
> {"click":"frmGLBalances.mnuExport"}
> {"answer":"{folder}/GLTotals.txt"}
? GLTotals.txt ["...",
   "102\t\t\t\tCredit Union\t\t\t\t1\t2026\t\t6300.5\t\t\t\t\t\t\t\t\t\t\t\t6300.5","...",
   "3900\t\t\t\tRetained Earnings\t\t\t\t5\t2026\t\t-7150\t\t\t\t\t\t\t\t\t\t\t\t-7150","...",
   "6100\t\t\t\tRent\t\t\t\t4\t2026\t\t49.5\t\t\t\t\t\t\t\t\t\t\t\t49.5","..."]
> {"menu":"GL > JVs"}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"TransDescription":"January"}}
> {"key":"Enter"}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
> {"set":"frmJV.grdJVDet[3].GLAmount","value":"1200"}
> {"set":"frmJV.grdJVDet[4].GLAmount","value":"49.50"}
> {"click":"frmJV.btnOK"}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
> {"menu":"GL > Totals"}
> {"key":"F5"}
> {"state":"frmGLBalances"}
< {"state":{"controls":{"grdGLActual":{"rows":["...",{"cells":{"GLAccount":"6100","Amount1":"1,200.00"}},"...",
   {"cells":{"GLAccount":"6700","Amount1":"49.50"}},"..."]}}}}

# What was brought over is kept from slips.
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editEPeriodFromPP","value":"2"}
> {"set":"frmCompany.editEPeriodFromYYYY","value":"26"}
> {"click":"frmCompany.btnOK"}
> {"menu":"GL > JVs"}
> {"key":"Ctrl+N"}
> {"set":"frmJV.editGLPeriod","value":"1"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"text":"GL Period is not within allowed range \ras defined by \"Your Company\""}]}
> {"click":"frmJV.btnCancel"}
