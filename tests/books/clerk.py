"""Works in a company by the driver."""
import json
import pathlib
import subprocess
import sys
from decimal import Decimal as number

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from driver import Driver
from sheet import Sheet

KINDS = {"asset": "Asset", "liability": "Liability", "equity": "Equity", "income": "Revenue", "expense": "Expense"}
LONG = 8  # lines from which a voucher is imported
RETAINED = {"account": "Retained", "name": "Retained Earnings", "type": "equity"}
SAVED = ["Balance Sheet", "Income Statement"]  # numbered from 1


class Clerk:
    """Anything that is not done is an error."""

    def __init__(self, program, folder, today):
        words = [folder + "/company", "--settings", folder + "/settings", "--today", today, "--country", "Canada"]
        self.driver = Driver(program, words)
        self.lines = pathlib.Path(folder + "/lines.txt")
        self.printing = [program, "report", folder + "/company", "--settings", folder + "/printing", "--printer",
                         "letter", "--xlsx", folder + "/sheet.xlsx"]

    def do(self, **request):
        reply = self.driver.send(json.dumps(request))
        if not reply["ok"] or reply["messages"]:
            raise RuntimeError(f"{request}: {reply}")
        return reply

    def fill(self, screen, **fields):
        for field, value in fields.items():
            self.do(set=f"{screen}.{field}", value=value)

    def set_up(self, name, year):
        self.do(click="frmGettingStarted.btnCancel")
        self.do(menu="General > Your Company")
        self.fill("frmCompany", editCompanyName=name, editFiscalYear=year[2:])
        self.do(click="frmCompany.btnOK")

    def add_account(self, account):
        self.do(menu="GL > Accounts")
        self.do(click="frmGLAccounts.mnuNew")
        self.fill("frmGLAccount", editGLAccount=account["account"], editAccountName=account["name"],
                  radAccountType=KINDS[account["type"]])
        self.do(click="frmGLAccount.btnOK")

    def add_retained_earnings(self):
        self.add_account(RETAINED)
        self.do(menu="GL > Accounts")
        self.do(grid="frmGLAccounts.grdGLAccnt", do="locate", values={"GLAccount": RETAINED["account"]})
        self.do(click="frmGLAccounts.mnuEdit")
        self.fill("frmGLAccount", chkRetainedEarnings=True)
        self.do(click="frmGLAccount.btnOK")

    def save_statements(self):
        self.do(menu="GL > Reports")
        self.fill("frmGLReports", lboReports="Custom Financial Statements")
        self.do(click="frmGLReports.btnNext")
        for title in SAVED:
            self.do(click="frmGLReports.btnNew")
            self.fill("frmFinancialStmt", editStmtTitle=title)
            self.do(click="frmFinancialStmt.btnAutoCreate")
            self.do(answer="Yes")
            self.do(click="frmFinancialStmt.btnOK")
        self.do(close="frmGLReports")

    def printed(self, report, **asked):
        """The rows below the headings; none where it is refused because others posted meanwhile."""
        words = [report, *(f"{key}={value}" for key, value in asked.items())]
        done = subprocess.run([*self.printing, *words], capture_output=True, text=True)
        if "The ledger was changed while it was read... Print it again" in done.stderr:
            return []
        if done.returncode:
            raise RuntimeError(done.stderr)
        rows = Sheet(self.printing[-1]).rows()
        while not rows.pop(0)["A"].startswith("Period:"):
            pass
        return rows

    def statement(self, title, style, saved, year, first, last):
        asked = {"StmtID": 1 + SAVED.index(title)} if saved else {"statement": title}
        rows = self.printed("TrptFinancialStmt", format=style, year=year, period=first, **asked,
                            **({"upperPeriod": last} if last > first else {}))
        return [(row.pop("A"), list(row.values())) for row in rows if "A" in row]

    def trial_balance(self, year, period):
        rows = self.printed("TrptTrialBalance", year=year, period=period)[1:]
        total = rows.pop()
        balances = {row["A"]: row.get("C", number()) - row.get("D", number()) for row in rows}
        return balances, (total.get("C", number()), total.get("D", number()))

    def close_year(self):
        self.do(menu="General > Your Company")
        self.do(click="frmCompany.btnYearEnd")
        self.do(click="frmYearEnd.btnOK")
        self.do(answer="Yes")
        self.do(click="frmCompany.btnOK")

    def enter(self, vouchers):
        self.do(menu="GL > JVs")
        self.do(click="frmJVs.mnuNew")
        for lines in vouchers:
            year, month, _ = lines[0]["date"].split("-")
            self.fill("frmJV", editGLPeriod=month, editGLYear=year[2:], editTransDate=lines[0]["date"],
                      editTransDescription=lines[0]["text"])
            self.add_lines(lines)
            self.do(click="frmJV.btnOKNew")
        self.do(click="frmJV.btnCancel")

    def add_lines(self, lines):
        if len(lines) < LONG or any(number(line["amount"]) % number("0.01") for line in lines):
            for i, line in enumerate(lines):
                self.do(click="frmJV.btnNew")
                self.fill(f"frmJV.grdJVDet[{i}]", GLAccount=line["account"], GLAmount=line["amount"])
            return
        head = "Account\tSubAccount1\tSubAccount2\tSubAccount3\tAmount\n"
        self.lines.write_text(head + "".join(f"{line['account']}\t\t\t\t{line['amount']}\n" for line in lines))
        self.do(click="frmJV.mnuImportJVData")
        self.fill("frmImportJVData", editFileName=str(self.lines))
        self.do(click="frmImportJVData.btnOK")

    def post(self, count):
        self.do(click="frmJVs.mnuPost")
        label = self.do(state="frmJVsPost")["state"]["controls"]["lblRecordCount"]["caption"]
        if label != f"{count} JV(s) to be posted":
            raise RuntimeError(f"{label}, and {count} were entered")
        self.do(click="frmJVsPost.btnOK")

    def unpost(self, first, count):
        """Vouchers by their place in the list, which has the last ones first."""
        self.do(menu="GL > JVs")
        for row in range(first, first + count):
            self.do(grid="frmJVs.grdJV", do="goto", row=row)
            self.do(click="frmJVs.mnuEdit")
            self.do(click="frmJV.btnUnpost")
            self.do(answer="Yes")
            self.do(close="frmJV")

    def totals(self, year):
        """Of each account its amounts in that year: of the periods by their numbers, the opening by 0, "TotalChange"."""
        self.do(menu="GL > Totals")
        columns = {"OpeningBal": 0, "TotalChange": "TotalChange", **{f"Amount{period}": period for period in range(1, 13)}}
        amounts = {}
        for row in self.do(state="frmGLBalances", count=1000)["state"]["controls"]["grdGLActual"]["rows"]:
            if row["cells"]["GLYear"] == str(year):
                shown = [row["data"][column] for column in columns]
                amounts[row["cells"]["GLAccount"]] = {
                    place: number(str(a)) for place, a in zip(columns.values(), shown) if a is not None}
        return amounts

    def history(self):
        self.do(menu="GL > History")
        return self.do(state="frmGLHistory", count=1)["state"]["controls"]["grdGLHist"]["total"]
