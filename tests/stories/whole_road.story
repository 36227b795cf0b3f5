# From a machine that never saw the program to printed statements: the welcome, the sample, a company of one's own, its
# chart, the opening voucher, a quarter of a small studio's vouchers, posting, and the reports as PDF. What they have to
# show was worked out by hand.
@ none --today 2026-03-31 --country Canada --printer letter
< {"waiting":{"modal":"frmWelcome"}}
> {"click":"frmWelcome.btnOK"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":true,"messages":[],"closed":["frmCompanyDatabase","frmWelcome"],"waiting":null}
# The sample converts foreign currency by vouchers, which must not be done twice.
> {"menu":"GL > Reports"}
> {"set":"frmGLReports.lboReports","value":"Balance Sheet"}
> {"click":"frmGLReports.btnNext"}
> {"set":"frmGLReports.chkAutoForex","value":true}
< {"ok":false,"messages":[{"kind":"error",
   "text":"AutoForex cannot be selected with the sample data...\rBecause it has JVs to illustrate the JV method of converting foreign currency accounts to domestic currency"}],
   "focus":"frmGLReports.chkAutoForex"}
> {"close":"frmGLReports"}

> {"menu":"Companies > New Company"}
> {"set":"frmCompanyDatabase.editCompanyName","value":"Cedar Studio"}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/cedar"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"messages":[],"waiting":{"modal":"frmGettingStarted"}}
| 1
| 2
| 3
> {"click":"frmGettingStarted.btnNext"}
|
> {"set":"frmGettingStarted.optChart","value":"Service"}
| 4
| 5
| 6
> {"click":"frmGettingStarted.btnNext"}
|
> {"click":"frmGettingStarted.btnFinish"}
< {"ok":true,"messages":[],"closed":["frmGettingStarted","frmCompanyDatabase"],"waiting":null}

# What the studio has and owes at the beginning; then the quarter. Some of the revenue is given back.
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editGLPeriod","value":"1"}
> {"set":"frmJV.editGLYear","value":"26"}
> {"set":"frmJV.editTransDate","value":"2026-01-01"}
> {"set":"frmJV.editTransDescription","value":"Opening balances"}
| 0 | 1010 | 8250
| 1 | 1500 | 6000
| 2 | 1510 | -1200
| 3 | 2000 | -1050
| 4 | 2500 | -4000
| 5 | 3000 | -8000
> {"click":"frmJV.btnNew"}
> {"set":"frmJV.grdJVDet[{1}].GLAccount","value":"{2}"}
> {"set":"frmJV.grdJVDet[{1}].GLAmount","value":"{3}"}
|
> {"click":"frmJV.btnOKNew"}
< {"ok":true,"messages":[]}
| 2 | 2026-02-10 | Elm Clinic, billed | 1100 | 2100 | 4000 | -2000 | 2100 | -100
| 2 | 2026-02-28 | Rent of February, half in cash | 6100 | 900 | 1010 | -450 | 1010 | -450
| 3 | 2026-03-09 | Elm Clinic paid, less 2% | 1010 | 2058 | 4200 | 42 | 1100 | -2100
| 3 | 2026-03-31 | Wages of March | 6000 | 1500.55 | 2200 | -300.15 | 1010 | -1200.40
| 3 | 2026-03-31 | Loan | 6750 | 20.83 | 1010 | -15.83 | 1010 | -5
> {"set":"frmJV.editGLPeriod","value":"{1}"}
> {"set":"frmJV.editTransDate","value":"{2}"}
> {"set":"frmJV.editTransDescription","value":"{3}"}
> {"click":"frmJV.btnNew"}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"{4}"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"{5}"}
> {"click":"frmJV.btnNew"}
> {"set":"frmJV.grdJVDet[1].GLAccount","value":"{6}"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"{7}"}
> {"click":"frmJV.btnNew"}
> {"set":"frmJV.grdJVDet[2].GLAccount","value":"{8}"}
> {"set":"frmJV.grdJVDet[2].GLAmount","value":"{9}"}
> {"click":"frmJV.btnOKNew"}
< {"ok":true,"messages":[]}
|
> {"click":"frmJV.btnCancel"}
> {"click":"frmJVs.mnuPost"}
> {"state":"frmJVsPost"}
< {"state":{"controls":{"lblRecordCount":{"caption":"6 JV(s) to be posted"}}}}
> {"click":"frmJVsPost.btnOK"}
< {"ok":true,"messages":[]}

> {"menu":"GL > Reports"}
| Trial Balance | trial.pdf
| General Ledger | ledger.pdf
| Balance Sheet | balance.pdf
| Income Statement | income.pdf
> {"set":"frmGLReports.lboReports","value":"{1}"}
> {"click":"frmGLReports.btnNext"}
> {"set":"frmGLReports.editGLPeriod","value":"3"}
> {"set":"frmGLReports.editGLYear","value":"26"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview"]}
> {"click":"frmPreview.btnPDF"}
> {"answer":"{folder}/{2}"}
< {"ok":true,"outside":["{folder}/{2}"]}
> {"close":"frmPreview"}
> {"click":"frmGLReports.btnBack"}
|
? trial.pdf ["Cedar Studio Mar 31, 2026","Trial Balance","Period: 03/2026","Account no. Name Debit Credit Budget",
   "1010 Chequing Account 8,186.77","1100 Accounts Receivable 0.00","1500 Office Furniture and Equipment 6,000.00",
   "1510 Accumulated Depreciation - Office 1,200.00","2000 Accounts Payable 1,050.00","2100 GST Payable 100.00",
   "2200 Payroll Deductions Payable 300.15","2500 Bank Loan 4,000.00","3000 Owners' Capital 8,000.00",
   "4000 Service Revenue 2,000.00","4200 Sales Discounts 42.00","6000 Wages and Salaries 1,500.55","6100 Rent 900.00",
   "6750 Interest Expense 20.83","Report Totals: 16,650.15 16,650.15","Cedar Studio · Trial Balance · Period: 03/2026 Page 1 of 1"]
? ledger.pdf ["Cedar Studio Mar 31, 2026","General Ledger","...","1010 Chequing Account","Opening Balance 7,350.00",
   "3/26 09 Mar 26 1004 GL JV Elm Clinic paid, less 2% 2,058.00 9,408.00",
   "3/26 31 Mar 26 1005 GL JV Wages of March 1,200.40 8,207.60","3/26 31 Mar 26 1006 GL JV Loan 15.83 8,191.77",
   "3/26 31 Mar 26 1006 GL JV Loan 5.00 8,186.77","Total 1010, Closing Balance 2,058.00 1,221.23 8,186.77","1100 Accounts Receivable","...",
   "4200 Sales Discounts","Opening Balance 0.00","3/26 09 Mar 26 1004 GL JV Elm Clinic paid, less 2% 42.00 42.00",
   "Total 4200, Closing Balance 42.00 0.00 42.00","...","Report Totals: 3,621.38 3,621.38","Cedar Studio · General Ledger · Period: 03/2026 Page 2 of 2"]
? balance.pdf ["Cedar Studio Mar 31, 2026","Balance Sheet","Period: 3/2026","ASSETS","Petty Cash 0.00",
   "Chequing Account 8,186.77","...","Office Furniture and Equipment 6,000.00",
   "Accumulated Depreciation - Office (1,200.00)","...","Total Assets 12,986.77","LIABILITIES & EQUITY","Liabilities",
   "Accounts Payable 1,050.00","...","GST Payable 100.00","Payroll Deductions Payable 300.15","...",
   "Bank Loan 4,000.00","Total Liabilities 5,450.15","Equity","Retained Earnings Current Year (463.38)",
   "Owners' Capital 8,000.00","Owners' Drawings 0.00","Retained Earnings 0.00","Total Equity 7,536.62",
   "Total Liabilities & Equity 12,986.77","Cedar Studio · Balance Sheet · Period: 3/2026 Page 1 of 1"]
? income.pdf ["Cedar Studio Mar 31, 2026","Income Statement","Period: 3/2026","Period 3 Year to Date","Revenue",
   "Service Revenue 0.00 2,000.00","Sales Discounts (42.00) (42.00)","...","Total Revenue (42.00) 1,958.00","Expenses",
   "...","Wages and Salaries 1,500.55 1,500.55","...","Rent 0.00 900.00","...","Interest Expense 20.83 20.83","...",
   "Total Expenses 1,521.38 2,421.38","Net Income (1,563.38) (463.38)","Cedar Studio · Income Statement · Period: 3/2026 Page 1 of 1"]
