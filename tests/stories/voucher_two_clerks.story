# Two programs at the same voucher, and at the same number.
@ --today 2026-03-05 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
> {"sql":"INSERT INTO {1}"}
|

# Each takes a number of its own. Typed to the same, the second to save is refused.
> {"menu":"GL > JVs"}
2> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuNew"}
2> {"click":"frmJVs.mnuNew"}
> {"state":"frmJV"}
< {"state":{"controls":{"editJVNumber":{"value":"1001"}}}}
2> {"state":"frmJV"}
2< {"state":{"controls":{"editJVNumber":{"value":"1002"}}}}
2> {"set":"frmJV.editJVNumber","value":"1001"}
| 0 | 5
| 1 | -5
> {"click":"frmJV.btnNew"}
> {"key":"1"}
> {"click":"frmGLAccountSearch.btnOK"}
> {"type":"frmJV.grdJVDet[{1}].GLAmount","keys":"{2}"}
2> {"click":"frmJV.btnNew"}
2> {"key":"1"}
2> {"click":"frmGLAccountSearch.btnOK"}
2> {"type":"frmJV.grdJVDet[{1}].GLAmount","keys":"{2}"}
|
> {"click":"frmJV.btnOK"}
2> {"click":"frmJV.btnOK"}
2< {"ok":false,"messages":[{"text":"JV no. already exists for this period"}],"focus":"frmJV.editJVNumber","closed":[]}
2> {"set":"frmJV.editJVNumber","value":"1002"}
2> {"click":"frmJV.btnOK"}
2< {"closed":["frmJV"]}
> {"click":"frmJVs.mnuRefresh"}
> {"sql":"SELECT JVID, JVNumber FROM JV"}
< {"rows":[[1,1001],[2,1002]]}

# Whoever edits a voucher has it: the header's lock holds for its lines, and against deleting it.
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
2> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
> {"click":"frmJVs.mnuEdit"}
2> {"click":"frmJVs.mnuEdit"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"6"}
2> {"set":"frmJV.grdJVDet[1].GLAmount","value":"7"}
2< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"],"text":"The 'tblJV' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[],"finished":["..."]}
2> {"click":"frmJVs.mnuDelete"}
2> {"answer":"Yes"}
2< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"]}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
2> {"set":"frmJV.editTransDescription","value":"mine"}
2< {"waiting":{"dialog":{"kind":"warning"}}}

# Other vouchers are copied and deleted meanwhile.
2> {"answer":"No"}
2< {"ok":false}
2> {"close":"frmJV"}
2> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1002}}
2> {"click":"frmJVs.mnuCopy"}
2> {"click":"frmJV.btnOK"}
2> {"click":"frmJVs.mnuDelete"}
2> {"answer":"Yes"}
2< {"ok":true,"messages":[]}
2> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
2> {"click":"frmJVs.mnuEdit"}
2> {"set":"frmJV.editTransDescription","value":"mine"}
2< {"waiting":{"dialog":{"kind":"warning"}}}

# Yes tries again. What the other saved meanwhile is shown first.
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"-6"}
> {"click":"frmJV.btnOK"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblJV' has been changed or deleted since last retrieved.\rData will now be refreshed."}],"closed":[]}
2> {"state":"frmJV"}
2< {"state":{"cursor":"browse","controls":{"lblTotals":{"caption":"Debits: 6.00   Credits: 6.00CR"},
   "grdJVDet":{"rows":[{"cells":{"GLAmount":"6.00"}},{"cells":{"GLAmount":"(6.00)"}}]}}}}
2> {"set":"frmJV.editTransDescription","value":"mine"}
2> {"click":"frmJV.btnOK"}
2< {"closed":["frmJV"]}

# A voucher that was deleted meanwhile is closed: what stands behind it is another.
2> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJVs.mnuRefresh"}
> {"click":"frmJVs.mnuDelete"}
> {"answer":"Yes"}
2> {"set":"frmJV.grdJVDet[0].GLAmount","value":"8"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblJV' has been changed or deleted since last retrieved.\rData will now be refreshed."}],"closed":["frmJV"]}
2> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1002}}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1002}}
> {"click":"frmJVs.mnuDelete"}
> {"answer":"Yes"}
2> {"click":"frmJVs.mnuEdit"}
2< {"ok":false,"messages":[{"text":"This record has been deleted by another user"}],"opened":[]}

# One that was posted meanwhile is told of before it is deleted.
> {"sql":"INSERT INTO JV (JVID, GLYear, GLPeriod, JVNumber, Source, Posted) VALUES (50, 2026, 3, 1500, 'GL', false)"}
2> {"click":"frmJVs.mnuRefresh"}
> {"sql":"UPDATE JV SET Posted = true WHERE JVID = 50"}
2> {"click":"frmJVs.mnuDelete"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"warning"}]}
2> {"click":"frmJVs.mnuDelete"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete JV '1500'...\rIt has already been posted.\r(Posted JVs can be unposted from the \"Edit\" screen)."}]}

# A program that is killed leaves no lock behind.
> {"sql":"UPDATE JV SET Posted = false WHERE JVID = 50"}
2> {"click":"frmJVs.mnuRefresh"}
2> {"click":"frmJVs.mnuEdit"}
2> {"set":"frmJV.editTransDescription","value":"lost"}
2> {"set":"frmJV.grdJVDet[0].GLAccount","value":"1000"}
2!
> {"click":"frmJVs.mnuRefresh"}
> {"click":"frmJVs.mnuDelete"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
2> {"menu":"GL > JVs"}
2> {"click":"frmJVs.mnuNew"}
2> {"state":"frmJV"}
2< {"state":{"controls":{"editJVNumber":{"value":"1004"}}}}

# While somebody is asked in the middle of a save, others save to the same tables.
> {"sql":"UPDATE Company SET WPeriodFromYYYY = 2027, WPeriodFromPP = 1"}
| 0 | 5
| 1 | -5
2> {"set":"frmJV.grdJVDet[{1}].GLAccount","value":"1000"}
2> {"set":"frmJV.grdJVDet[{1}].GLAmount","value":"{2}"}
2> {"grid":"frmJV.grdJVDet","do":"append"}
|
2> {"click":"frmJV.btnOK"}
2< {"waiting":{"dialog":{"caption":"Warning"}}}
> {"sql":"INSERT INTO JVDet (JVID, Seq, GLAccountID) VALUES (60, 1, 1)"}
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editTransDescription","value":"meanwhile"}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"1000"}
> {"click":"frmJV.btnNew"}
< {"ok":true,"messages":[]}
> {"click":"frmJV.btnCancel"}
2> {"answer":"OK"}
2< {"closed":["frmJV"]}
