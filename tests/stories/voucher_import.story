# A clerk imports the lines of a voucher from a text file.
@ --today 2026-03-05 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, 'Ü50\"0', 'Rent', 4)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, Suspended) VALUES (3, '6000', 'Old', 4, true)
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (4, 'East', 'Eastern')
| GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (5, 'A', 'Alpha')
| GLAcSub3 (SubAccountID, SubAccount, SubAccountName) VALUES (6, 'Z', 'Omega')
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuNew"}
> {"click":"frmJV.mnuImportJVData"}
< {"opened":["frmImportJVData"],"waiting":{"modal":"frmImportJVData"}}
> {"state":"frmImportJVData"}
< {"state":{"title":"Import JV Data"}}

# The file's name.
|  | File name must be entered
| abc | File name invalid
| {folder}/none.txt | The specified file does not exist
| {folder} | The specified file does not exist
> {"set":"frmImportJVData.editFileName","value":"{1}"}
> {"click":"frmImportJVData.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{2}"}],"focus":"frmImportJVData.editFileName","closed":[]}
|
> {"click":"frmImportJVData.btnBrowse"}
< {"waiting":{"dialog":{}}}
> {"answer":null}
> {"set":"frmImportJVData.editFileName","value":"{folder}/lines.txt"}

# What is no file of lines is told with its place, and leaves the voucher as it was.
| [] | The file is empty
| ["Account\tSubAccount1\tSubAccount2\tAmount\n"] | Line 1: The field 'SubAccount3' is missing in the list of field names
| ["Account\tSubAccount1\tAmount\tSubAccount2\tSubAccount3\taccount\n"] | Line 1: The field 'Account' stands twice in the list of field names
| ["Account,SubAccount1,SubAccount2,SubAccount3,Amount\n"] | Line 1: The field 'Account' is missing in the list of field names
| ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n\u00dc\t\t\t\t1\n"] | Line 2: The file is not a text in UTF-8; save it as UTF-8 and import it again
| ["\u00ff\u00feA\u0000c\u0000"] | Line 1: The file is not a text in UTF-8; save it as UTF-8 and import it again
| ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n1000\t\t\t\t1.00\n12345678901\t\t\t\t1\n"] | Line 3: Account '12345678901' is too long
| ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n1000\t\t123456\t\t1\n"] | Line 2: SubAccount2 '123456' is too long
| ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n1000\t\t\t\t1,00\n"] | Line 2: Amount '1,00' is not a number with at most 2 decimals
| ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n1000\t\t\t\t1.001\n"] | Line 2: Amount '1.001' is not a number with at most 2 decimals
| ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n1000\t\t\t\t100000000\n"] | Line 2: Amount '100000000' has more than 10 digits
= lines.txt {1}
> {"click":"frmImportJVData.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{2}"}],"closed":[]}
|
> {"state":"frmJV"}
< {"state":{"controls":{"grdJVDet":{"total":0}}}}

# Fields in any order, with a mark at the file's start, quotes, blank lines and fields left out at the end.
= lines.txt ["\u00ef\u00bb\u00bfAMOUNT\tSubAccount1\tAccount\tSubAccount2\tSubAccount3\r\n10.50\tEast\t1000\tA\tZ\r\n\r\n-10.5\t\t\"\u00c3\u009c50\"\"0\"\n\t\t1000"]
> {"options":{"progress":true}}
> {"click":"frmImportJVData.btnOK"}
< {"closed":["frmImportJVData"],"focus":"frmJV.grdJVDet[0].GLAccount","progress":[{"text":"Importing to memory"},{"text":"Importing"}]}
> {"sql":"SELECT Seq, GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, GLAmount FROM JVDet"}
< {"rows":[[1,1,4,5,6,10.5],[2,2,null,null,null,-10.5],[3,1,null,null,null,null]]}
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 10.50   Credits: 10.50CR"}}}}

# Unknown codes: Yes leaves out the row; No ends the import, and the rows before it stay.
= lines.txt ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n77\t\t\t\t1\n1000\tx\t\t\t2\n1000\t\tx\t\t3\n1000\t\t\tx\t4\n1000\t\t\t\t5\n\t\t\t\t6\n1000\t\t\t\t7\n"]
> {"click":"frmJV.mnuImportJVData"}
> {"set":"frmImportJVData.editFileName","value":"{folder}/lines.txt"}
> {"click":"frmImportJVData.btnOK"}
| Account '77' does not exist.\rData for this account
| SubAccount1 'x' does not exist.\rData for this SubAccount1
| SubAccount2 'x' does not exist.\rData for this SubAccount2
| SubAccount3 'x' does not exist.\rData for this SubAccount3
< {"waiting":{"dialog":{"kind":"warning","caption":"Warning","buttons":["Yes","No"],"default":"No","text":"{1} cannot be imported.\r\rDo you want to continue?"}}}
> {"answer":"Yes"}
|
< {"waiting":{"dialog":{"text":"Account '' does not exist.\rData for this account cannot be imported.\r\rDo you want to continue?"}}}
2> {"sql":"INSERT INTO JVDet (JVID, Seq, GLAccountID) VALUES (77, 1, 1)"}
2< {"changed":1}
> {"answer":"No"}
< {"ok":true,"messages":[],"closed":["frmImportJVData"],"focus":"frmJV.grdJVDet[0].GLAccount"}
> {"sql":"SELECT Seq, GLAmount FROM JVDet WHERE Seq > 3"}
< {"rows":[[4,5]]}
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 15.50   Credits: 10.50CR   Diff: 5.00CR"},"grdJVDet":{"total":4}}}}

# A line that is being entered comes first.
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[4].GLAmount","value":"3"}
> {"click":"frmJV.mnuImportJVData"}
< {"ok":false,"messages":[{"text":"Field 'GL Account' must have a value...\rMake changes or press Esc to undo"}],
   "opened":[],"focus":"frmJV.grdJVDet[4].GLAccount"}
> {"key":"Esc"}

# A row that the voucher's own rules refuse ends it too; nothing of it stays.
= lines.txt ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n1000\t\t\t\t-5\n\n6000\t\t\t\t1\n"]
> {"click":"frmJV.mnuImportJVData"}
> {"set":"frmImportJVData.editFileName","value":"{folder}/lines.txt"}
> {"click":"frmImportJVData.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Line 4: GL Account has been suspended"}],"closed":[]}
> {"click":"frmImportJVData.btnCancel"}
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 15.50   Credits: 15.50CR"},"grdJVDet":{"total":5}}}}
> {"click":"frmJV.btnOK"}
< {"closed":["frmJV"]}

# A long file, and Cancel behind it.
= lines.txt ["Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n",["1000\tEast\t\t\t1\n1000\t\tA\t\t-1.00\n",50000]]
> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.mnuImportJVData"}
> {"set":"frmImportJVData.editFileName","value":"{folder}/lines.txt"}
> {"click":"frmImportJVData.btnOK"}
> {"state":"frmJV","count":1}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 50,015.50   Credits: 50,015.50CR"},"grdJVDet":{"total":100005}}}}
> {"click":"frmJV.btnCancel"}
> {"sql":"SELECT count(*), max(Seq) FROM JVDet"}
< {"rows":[[6,5]]}
