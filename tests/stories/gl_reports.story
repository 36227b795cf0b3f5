# The launcher of the ledger's reports: choosing, what each asks for, previews, and from a figure to what it is made of.
@ --today 2026-03-05 --country Canada --printer letter
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '2000', 'Loan', 2)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (3, '4000', 'Sales', 3)
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'N', 'North')
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount2, Amount3, Amount4) VALUES (1, 2026, 'A', 100.5, 50, 1500.25, 7)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount1, Amount2) VALUES (2, 2026, 'A', -100.5, 10, -50)
| GLActual (GLAccountID, GLYear, ActualBudget, Amount1) VALUES (3, 2026, 'A', -10)
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount3, Amount4) VALUES (3, 1, 2026, 'A', -1500.25, -7)
| GLBudget (GLAccountID, GLYear, ActualBudget, Amount1, Amount4) VALUES (1, 2026, 'B', 900, 1)
| GLBudget (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount1) VALUES (2, 1, 2026, 'B', -5)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (5, 2026, 3, 1001, 'GL', 'JV', '2026-03-02', 'Sold', 1500.25, true, false)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (5, 1, 1, 1500.25)
| JVDet (JVID, Seq, GLAccountID, SubAccount1ID, GLAmount) VALUES (5, 2, 3, 1, -1500.25)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (1, 2026, 3, 'GL', 'JV', 1001, '2026-03-02', 1500.25, 'Sold', 5)
| GLHist (GLAccountID, SubAccount1ID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (3, 1, 2026, 3, 'GL', 'JV', 1001, '2026-03-02', -1500.25, 'Sold', 5)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (2, 2026, 1, 'GL', 'JV', 999, '2026-01-02', 10, 'Purged', 77)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (3, 2026, 1, 'GL', 'JV', 999, '2026-01-02', -10, 'Purged', 77)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (1, 2026, 4, 'GL', 'JV', 1002, '2026-04-02', 7, 'Sold', 6)
| GLHist (GLAccountID, SubAccount1ID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (3, 1, 2026, 4, 'GL', 'JV', 1002, '2026-04-02', -7, 'Sold', 6)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"GL > Reports"}
< {"opened":["frmGLReports"],"focus":"frmGLReports.lboReports"}
> {"state":"frmGLReports"}
< {"state":{"title":"GL Reports","controls":{"pagSteps":{"page":0,"pages":["Choose a report.","...","Choose a statement."]},"lboReports":{"value":"General Ledger"},"btnBack":{"caption":"< &Back","enabled":false},"btnNext":{"caption":"&Next >"}}}}

# The trial balance asks for a period; what is wrong with it keeps the focus there.
> {"set":"frmGLReports.lboReports","value":"Trial Balance"}
> {"click":"frmGLReports.btnNext"}
< {"focus":"frmGLReports.editGLPeriod"}
> {"state":"frmGLReports"}
< {"state":{"controls":{"pagSteps":{"page":1},"lblReportTitle":{"caption":"Trial Balance"},"btnNext":{"caption":"&Preview"},"editGLPeriod":{"visible":true},"editAsOfDate":{"visible":false},"editDateFrom":{"visible":false},"cboStyle":{"visible":false},"chkAutoForex":{"visible":false},"chkValidate":{"visible":false}}}}
> {"set":"frmGLReports.editGLPeriod","value":"13"}
< {"ok":false,"messages":[{"text":"Period must be between 1 and 12"}],"focus":"frmGLReports.editGLPeriod"}
> {"set":"frmGLReports.editGLPeriod","value":"3"}
> {"set":"frmGLReports.editGLYear","value":""}
> {"click":"frmGLReports.btnNext"}
< {"ok":false,"messages":[{"text":"Period invalid...\rEnter year as 2 digits"}],"focus":"frmGLReports.editGLYear"}
> {"set":"frmGLReports.editGLYear","value":"26"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview"]}
> {"state":"frmPreview","page":1}
< {"state":{"controls":{"panelPageNumber":{"caption":"Page 1 of 1"},"pgvPages":{"title":"Trial Balance","count":1,"links":["Cash","1,650.75","900.00","Loan","140.50",
   "Loan - North","(5.00)","Sales","10.00","Sales - North","1,500.25","1,650.75","1,650.75"]}}}}

# From a balance to the lines of the account, with its subaccounts and up to the period; from the name to those of the
# year; from a budget to itself, also where nothing was posted.
| Cash | frmGLHistory | grdGLHist | 2
| 1,650.75 | frmGLHistory | grdGLHist | 1
| 10.00 | frmGLHistory | grdGLHist | 1
| Sales - North | frmGLHistory | grdGLHist | 2
| 1,500.25 | frmGLHistory | grdGLHist | 1
| 900.00 | frmGLBudget | grdGLBudget | 1
| (5.00) | frmGLBudget | grdGLBudget | 1
> {"follow":"frmPreview.pgvPages","text":"{1}"}
< {"opened":["{2}"]}
> {"state":"{2}"}
< {"state":{"controls":{"{3}":{"total":{4}}}}}
> {"close":"{2}"}
|
> {"follow":"frmPreview.pgvPages","text":"Acme"}
< {"ok":false,"error":{"text":"'Acme' leads nowhere"}}

# The launcher stays, and another preview stands beside the first.
> {"click":"frmGLReports.btnBack"}
> {"set":"frmGLReports.lboReports","value":"General Ledger"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview2"]}
> {"state":"frmPreview2","page":1}
< {"state":{"controls":{"pgvPages":{"title":"General Ledger","links":["150.50","1001","1,500.25","1,650.75","1,500.25","0.00","1,650.75",
   "(140.50)","0.00","0.00","(140.50)","(10.00)","0.00","0.00","(10.00)",
   "0.00","1001","1,500.25","(1,500.25)","0.00","1,500.25","(1,500.25)","1,500.25","1,500.25"]}}}}

# A line leads to its voucher, its balance to the lines before, an opening to the year's totals.
| 1001 | frmJV
| 1,500.25 | frmJV
> {"follow":"frmPreview2.pgvPages","text":"{1}"}
< {"opened":["{2}"]}
> {"close":"{2}"}
|
| 150.50 | frmGLBalances | grdGLActual
| (10.00) | frmGLBalances | grdGLActual
| 1,650.75 | frmGLHistory | grdGLHist
> {"follow":"frmPreview2.pgvPages","text":"{1}"}
< {"opened":["{2}"]}
> {"state":"{2}"}
< {"state":{"controls":{"{3}":{"total":1}}}}
> {"close":"{2}"}
|

# All of the year, with a voucher that is not there any more, and an account's sums; those of all accounts.
> {"set":"frmGLReports.editGLPeriod","value":""}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview3"]}
> {"follow":"frmPreview3.pgvPages","text":"999"}
< {"ok":false,"messages":[{"text":"JV 999 not found...\rIt may have been deleted or purged."}],"opened":[]}
> {"click":"frmGLReports.btnBack"}
> {"set":"frmGLReports.lboReports","value":"General Ledger Summary"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview4"]}
| 3 | (100.50) | frmGLBalances | grdGLActual | 1
| 3 | 1,507.25 | frmGLHistory | grdGLHist | 2
| 3 | 1,517.25 | frmGLBalances | grdGLActual | 4
| 4 | 100.50 | frmGLBalances | grdGLActual | 1
| 4 | 1,507.25 | frmGLHistory | grdGLHist | 2
| 4 | 10.00 | frmGLHistory | grdGLHist | 1
| 4 | (1,507.25) | frmGLBalances | grdGLActual | 1
| 4 | 1,517.25 | frmGLBalances | grdGLActual | 4
> {"follow":"frmPreview{1}.pgvPages","text":"{2}"}
< {"opened":["{3}"]}
> {"state":"{3}"}
< {"state":{"controls":{"{4}":{"total":{5}}}}}
> {"close":"{3}"}
|

# Statements: a range of periods only where changes are shown.
> {"click":"frmGLReports.btnBack"}
> {"set":"frmGLReports.lboReports","value":"Income Statement"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNext"}
< {"ok":false,"messages":[{"text":"Period must be between 1 and 12"}]}
> {"set":"frmGLReports.editGLPeriod","value":"3"}
> {"set":"frmGLReports.editGLPeriodTo","value":"2"}
> {"click":"frmGLReports.btnNext"}
< {"ok":false,"messages":[{"text":"To period is before the period"}]}
> {"set":"frmGLReports.editGLPeriodTo","value":"4"}
> {"set":"frmGLReports.cboStyle","value":"Net Change: Compare period"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview5"]}
> {"state":"frmPreview5","page":1}
< {"state":{"controls":{"pgvPages":{"title":"Income Statement"}}}}
> {"click":"frmGLReports.btnBack"}
> {"set":"frmGLReports.lboReports","value":"Balance Sheet"}
> {"click":"frmGLReports.btnNext"}
> {"state":"frmGLReports"}
< {"state":{"controls":{"editGLPeriodTo":{"visible":false},"cboStyle":{"value":"Balance: Simple"}}}}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview6"]}
> {"state":"frmPreview6","page":1}
< {"state":{"controls":{"pgvPages":{"title":"Balance Sheet"}}}}

# A figure opens the totals or the budgets of its column, within the subaccounts that limit the statement or its line,
# which the page tells. The style that was chosen for a report is still there.
| GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount3) VALUES (3, 1, 2025, 'A', -20)
| GLBudget (GLAccountID, SubAccount1ID, GLYear, ActualBudget, Amount3) VALUES (3, 1, 2026, 'B', -1600)
| FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (1, 'Northern', 'Balance: Compare year')
| FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (1, 1, 1, 'Sales of the north', 'Detail Li Eq')
| FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (1, 2, 2, 'Sum', 'Total Li Eq')
| FStmtLAc (StmtID, Seq, AccountFrom, AccountTo, SubAccount1ID) VALUES (1, 1, '3', '5', 1)
| FStmtLTo (StmtID, Seq, TotalLineSeq) VALUES (1, 1, 2)
> {"sql":"INSERT INTO {1}"}
|
> {"click":"frmGLReports.btnBack"}
> {"set":"frmGLReports.lboReports","value":"Income Statement"}
> {"click":"frmGLReports.btnNext"}
> {"state":"frmGLReports"}
< {"state":{"controls":{"cboStyle":{"value":"Net Change: Compare period"}}}}
> {"set":"frmGLReports.editSubAccount1","value":"N"}
| Net Change: Compare year
| Net Change: Compare budget
> {"set":"frmGLReports.cboStyle","value":"{1}"}
> {"click":"frmGLReports.btnNext"}
|
> {"set":"frmGLReports.editSubAccount1","value":""}
> {"click":"frmGLReports.btnBack"}
> {"set":"frmGLReports.lboReports","value":"Custom Financial Statements"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview9"]}
| 7 | Sales | frmGLBalances | grdGLActual | 1
| 7 | 1,507.25 | frmGLBalances | grdGLActual | 1
| 7 | 20.00 | frmGLBalances | grdGLActual | 1
| 7 | 1,487.25 | frmGLBalances | grdGLActual | 2
| 8 | 1,600.00 | frmGLBudget | grdGLBudget | 1
| 9 | 1,500.25 | frmGLBalances | grdGLActual | 1
| 9 | Sum | frmGLBalances | grdGLActual | 1
| 9 | 1,480.25 | frmGLBalances | grdGLActual | 2
> {"follow":"frmPreview{1}.pgvPages","text":"{2}"}
< {"opened":["{3}"]}
> {"state":"{3}"}
< {"state":{"controls":{"{4}":{"total":{5}}}}}
> {"close":"{3}"}
|
> {"follow":"frmPreview8.pgvPages","text":"(92.75)"}
< {"opened":["frmGLBudget","frmGLBalances"]}
> {"set":"frmPreview8.editSearch","value":"Subaccount 1: North"}
> {"click":"frmPreview8.btnFind"}

# What others do to a chosen statement is seen at the next preview.
> {"set":"frmGLReports.chkAutoForex","value":true}
> {"sql":"UPDATE FStmt SET ColumnFormat = 'Net Change: Simple' WHERE StmtID = 1"}
> {"click":"frmGLReports.btnNext"}
| Year to Date
| AutoForex
> {"set":"frmPreview10.editSearch","value":"{1}"}
> {"click":"frmPreview10.btnFind"}
|
> {"sql":"DELETE FROM FStmt WHERE StmtID = 1"}
> {"sql":"INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (2, 'Another', 'Balance: Simple')"}
| 1
| 2
> {"click":"frmGLReports.btnNext"}
< {"ok":false,"messages":[{"text":"This statement has been deleted by another user"}],"opened":[]}
|

# A line that another unposted after it was printed.
> {"sql":"DELETE FROM GLHist WHERE JVNumber = 1001"}
> {"follow":"frmPreview3.pgvPages","text":"1001"}
< {"ok":false,"messages":[{"text":"This line was unposted by another user"}],"opened":[]}

# Without a printer nothing is previewed; the previews go with the company.
> {"quit":true}
@ --today 2026-03-05 --country Canada --printer none
> {"menu":"GL > Reports"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNext"}
< {"waiting":{"dialog":{"kind":"warning","text":"No printer driver was detected. Do you have a printer installed?","buttons":["Yes","No"],"default":"No"}}}
> {"answer":"No"}
< {"ok":false,"messages":[{"text":"You do not have a default printer defined.\r\rTo preview or print reports a printer must be defined, though not necessarily attached."}],"opened":[]}
> {"click":"frmGLReports.btnNext"}
> {"answer":"Yes"}
< {"opened":["frmPreview"]}
