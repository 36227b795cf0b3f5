# A bookkeeper's year: the company is set up by the wizard, vouchers are entered and posted, the year is carried forward,
# closed, opened again for a late voucher, carried forward and closed again.
@ empty --today 2026-01-15 --country Canada --printer letter
> {"set":"frmGettingStarted.editCompanyName","value":"Pine Street Books"}
| 1
| 2
| 3
| 4
| 5
| 6
> {"click":"frmGettingStarted.btnNext"}
|
> {"click":"frmGettingStarted.btnFinish"}
< {"closed":["frmGettingStarted"]}

# The opening voucher, sales, and an accrual that is reversed in the next year.
> {"menu":"GL > JVs"}
| 1 | Owner's money | No | 1010 | 5000 | 3000 | -5000
| 3 | Sales of March | No | 1010 | 1200.50 | 4000 | -1200.50
| 12 | Rent of December, not yet billed | Yes | 6100 | 300 | 2300 | -300
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editGLPeriod","value":"{1}"}
> {"set":"frmJV.editTransDescription","value":"{2}"}
> {"set":"frmJV.chkAutoReverse","value":"{3}"}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"{4}"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"{5}"}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[1].GLAccount","value":"{6}"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"{7}"}
> {"click":"frmJV.btnOK"}
|

# The next year may be entered before this one is closed: the company expects none, and says so.
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editGLYear","value":"27"}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"6100"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"310"}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[1].GLAccount","value":"1010"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"-310"}
> {"click":"frmJV.btnOK"}
< {"waiting":{"dialog":{"kind":"warning","text":"GL Period is not within expected range \ras defined by \"Your Company\"."}}}
> {"answer":"OK"}

# Vouchers first.
> {"menu":"General > Your Company"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
< {"ok":false,"messages":[{"text":"Unable to run year-end...\rUnposted JVs exist for year to be closed"}],"closed":["frmYearEnd"]}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"No"}
> {"menu":"GL > Totals"}
> {"click":"frmGLBalances.mnuFilter"}
> {"set":"frmGLBalancesFilter.editGLYear","value":"27"}
> {"click":"frmGLBalancesFilter.btnOK"}
> {"state":"frmGLBalances"}
< {"state":{"controls":{"grdGLActual":{"total":5,"rows":[
   {"cells":{"GLAccount":"1010","OpeningBal":"6,200.50","Amount1":"(310.00)"}},{"cells":{"GLAccount":"2300","OpeningBal":"(300.00)","Amount1":"300.00"}},
   {"cells":{"GLAccount":"3000","OpeningBal":"(5,000.00)","Amount1":""}},{"cells":{"GLAccount":"3900","OpeningBal":"(900.50)"}},
   {"cells":{"GLAccount":"6100","OpeningBal":"0.00","Amount1":"10.00"}}]}}}}

# Closed: nothing more can be entered or unposted in it.
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"Yes"}
> {"click":"frmCompany.btnOK"}
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editGLPeriod","value":"12"}
> {"set":"frmJV.editGLYear","value":"26"}
> {"set":"frmJV.editTransDescription","value":"Bank charges of December"}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"6700"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"25.25"}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[1].GLAccount","value":"1010"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"-25.25"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"text":"GL Period is prior to current fiscal year \ras defined by \"Your Company\""}],"focus":"frmJV.editGLPeriod"}

# The year is opened again for it; then carried forward and closed once more.
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editFiscalYear","value":"26"}
> {"click":"frmCompany.btnOK"}
> {"click":"frmJV.btnOK"}
< {"waiting":{"dialog":{"kind":"warning"}}}
> {"answer":"OK"}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
> {"menu":"General > Your Company"}
> {"click":"frmCompany.btnYearEnd"}
> {"click":"frmYearEnd.btnOK"}
> {"answer":"Yes"}
> {"click":"frmCompany.btnOK"}
> {"sql":"SELECT A.GLAccount, T.OpeningBal, T.Amount1 FROM GLActual T INNER JOIN GLAccnt A ON A.GLAccountID = T.GLAccountID WHERE T.GLYear = 2027 ORDER BY A.GLAccount"}
< {"rows":[["1010",6175.25,-310],["2300",-300,300],["3000",-5000,null],["3900",-875.25,null],["6100",0,10]]}
> {"click":"frmJVs.mnuRefresh"}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"TransDescription":"Sales of March"}}
> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.btnUnpost"}
< {"messages":[{"kind":"information","text":"JV is from a previous closed year.\r\rYou need to re-open the year before you can unpost this JV.\rMenu File | General | Your Company\rChange the Fiscal Year."}]}

# The statements of the year, as files.
> {"menu":"GL > Reports"}
> {"set":"frmGLReports.lboReports","value":"Balance Sheet"}
> {"click":"frmGLReports.btnNext"}
> {"set":"frmGLReports.editGLPeriod","value":"12"}
> {"set":"frmGLReports.editGLYear","value":"26"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview"]}
> {"click":"frmPreview.btnPDF"}
< {"waiting":{"dialog":{"kind":"file","caption":"Export Report to PDF"}}}
> {"answer":"{folder}/balance.pdf"}
< {"ok":true,"outside":["{folder}/balance.pdf"]}
> {"click":"frmGLReports.btnBack"}
> {"set":"frmGLReports.lboReports","value":"Income Statement"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNext"}
< {"opened":["frmPreview2"]}
> {"click":"frmPreview2.btnExcel"}
< {"waiting":{"dialog":{"kind":"file","caption":"Export Report to Excel"}}}
> {"answer":"{folder}/income.xlsx"}
< {"ok":true,"outside":["{folder}/income.xlsx"]}
