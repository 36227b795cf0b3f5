#include "store/schema/TableSpecs.h"

// The chart of accounts, totals and history, budgets, vouchers, statement definitions and bank accounts.
namespace quillon::store::schema {
namespace {

using enum FieldType;

// The chart of accounts.
constexpr FieldSpec kGLAccntFields[] = {
    {"GLAccountID", integer}, {"GLAccount", string, 10, kRequired},    {"AccountName", string, 50, kRequired},
    {"Notes", memo},          {"AccountType", smallint, 0, kRequired}, {"RetainedEarnings", boolean},
    {"Suspended", boolean},
};
constexpr IndexSpec kGLAccntIndexes[] = {
    primary("GLAccountID"),
    {"AccountName1", "AccountName", kUniqueNoCase},
    {"GLAccount", "GLAccount", kUnique},
    plain("AccountType"),
};

// The three lists of subaccounts.
constexpr FieldSpec kGLAcSubFields[] = {
    {"SubAccountID", integer},
    {"SubAccount", string, 5, kRequired},
    {"SubAccountName", string, 12, kRequired},
    {"Suspended", boolean},
};
constexpr IndexSpec kGLAcSubIndexes[] = {
    primary("SubAccountID"),
    {"SubAccountName1", "SubAccountName", kUniqueNoCase},
    {"SubAccount", "SubAccount", kUnique},
};

// Opening balance and twelve period totals by account, subaccounts and year: what was posted, and in GLBudget, of the
// same shape, what was planned.
constexpr FieldSpec kGLActualFields[] = {
    {"GLAccountID", integer, 0, kRequired},
    {"SubAccount1ID", integer},
    {"SubAccount2ID", integer},
    {"SubAccount3ID", integer},
    {"GLYear", smallint, 0, kRequired},
    {"ActualBudget", string, 1, kRequired},
    {"OpeningBal", currency},
    {"Amount1", currency},
    {"Amount2", currency},
    {"Amount3", currency},
    {"Amount4", currency},
    {"Amount5", currency},
    {"Amount6", currency},
    {"Amount7", currency},
    {"Amount8", currency},
    {"Amount9", currency},
    {"Amount10", currency},
    {"Amount11", currency},
    {"Amount12", currency},
};
constexpr IndexSpec kGLActualIndexes[] = {
    primary("GLAccountID;SubAccount1ID;SubAccount2ID;SubAccount3ID;GLYear"),
    plain("GLAccountID"),
    plain("SubAccount1ID"),
    plain("SubAccount2ID"),
    plain("SubAccount3ID"),
    {"GLAccountIDYear", "GLAccountID;GLYear"},
};

// One row a posted voucher line.
constexpr FieldSpec kGLHistFields[] = {
    {"GLHistID", autoInc},
    {"GLAccountID", integer, 0, kRequired},
    {"SubAccount1ID", integer},
    {"SubAccount2ID", integer},
    {"SubAccount3ID", integer},
    {"GLYear", smallint, 0, kRequired},
    {"GLPeriod", smallint, 0, kRequired},
    {"Source", string, 2, kRequired},
    {"TransType", string, 3},
    {"JVNumber", integer, 0, kRequired},
    {"TransDate", date, 0, kRequired},
    {"Amount", currency, 0, kRequired},
    {"TransDescription", string, 60},
    {"VendorID", integer},
    {"APInvoiceID", integer},
    {"ChequeID", integer},
    {"CustomerID", integer},
    {"ARInvoiceID", integer},
    {"PaymentID", integer},
    {"AdjustmentID", integer},
    {"JVID", integer},
    {"Reconciled", boolean},
    {"Reconciling", boolean},
};
constexpr IndexSpec kGLHistIndexes[] = {
    primary("GLHistID"),
    {"GLAccountIDPeriodDateJV",
     "GLAccountID;SubAccount1ID;SubAccount2ID;SubAccount3ID;GLYear;GLPeriod;TransDate;JVNumber"},
    descending("PeriodDateJVDESC", "GLYear;GLPeriod;TransDate;JVNumber;GLHistID"),
    descending("GLAccntIDPeriodDateJVDESC", "GLAccountID;GLYear;GLPeriod;TransDate;JVNumber;GLHistID"),
    plain("GLPeriod"),
    plain("GLYear"),
    plain("GLAccountID"),
    plain("SubAccount1ID"),
    plain("SubAccount2ID"),
    plain("SubAccount3ID"),
    plain("JVID"),
    plain("Source"),
    plain("TransType"),
    plain("TransDate"),
    plain("Reconciled"),
    plain("Reconciling"),
};

// Journal voucher headers; every ledger effect of every module passes through them.
constexpr FieldSpec kJVFields[] = {
    {"JVID", integer},        {"GLYear", smallint},     {"GLPeriod", smallint},    {"JVNumber", integer},
    {"Source", string, 2},    {"TransType", string, 3}, {"TransDate", date},       {"TransDescription", string, 60},
    {"VendorID", integer},    {"APInvoiceID", integer}, {"ChequeID", integer},     {"CustomerID", integer},
    {"ARInvoiceID", integer}, {"PaymentID", integer},   {"AdjustmentID", integer}, {"JVAmount", currency},
    {"Posted", boolean},      {"AutoReverse", boolean},
};
constexpr IndexSpec kJVIndexes[] = {
    primary("JVID"),
    plain("Source"),
    plain("TransType"),
    plain("JVNumber"),
    plain("Posted"),
    {"PeriodJVNumber", "GLYear;GLPeriod;JVNumber", kUnique},
    descending("PeriodJVNumberDESC", "GLYear;GLPeriod;JVNumber"),
    {"Description_PeriodJVNumberDESC", "TransDescription;GLYear;GLPeriod;JVNumber", kNoCase,
     "GLYear;GLPeriod;JVNumber"},
};

// Journal voucher lines.
constexpr FieldSpec kJVDetFields[] = {
    {"JVID", integer},          {"Seq", integer},           {"GLAccountID", integer}, {"SubAccount1ID", integer},
    {"SubAccount2ID", integer}, {"SubAccount3ID", integer}, {"GLAmount", currency},
};
constexpr IndexSpec kJVDetIndexes[] = {
    primary("JVID;Seq"), plain("GLAccountID"), plain("SubAccount1ID"), plain("SubAccount2ID"), plain("SubAccount3ID"),
};

// Control row of voucher numbering.
constexpr FieldSpec kJVCtlFields[] = {
    {"NextJVID", integer},
    {"NextJVNumber", integer},
};

// Financial statement definitions.
constexpr FieldSpec kFStmtFields[] = {
    {"StmtID", integer, 0, kRequired},
    {"StmtTitle", string, 40, kRequired},
    {"ColumnFormat", string, 40, kRequired},
    {"Notes", memo},
};
constexpr IndexSpec kFStmtIndexes[] = {
    primary("StmtID"),
    {"StmtTitle1", "StmtTitle", kNoCase},
};

// Lines of a statement.
constexpr FieldSpec kFStmtLinFields[] = {
    {"StmtID", integer, 0, kRequired},   {"Seq", integer}, {"LineNo", integer}, {"LineHeading", string, 40},
    {"LineType", string, 14, kRequired},
};
constexpr IndexSpec kFStmtLinIndexes[] = {
    primary("StmtID;Seq"),
    {"StmtIDLineNo", "StmtID;LineNo"},
};

// Accounts of a statement line.
constexpr FieldSpec kFStmtLAcFields[] = {
    {"StmtID", integer, 0, kRequired}, {"Seq", integer, 0, kRequired}, {"AccountFrom", string, 10, kRequired},
    {"AccountTo", string, 10},         {"SubAccount1ID", integer},     {"SubAccount2ID", integer},
    {"SubAccount3ID", integer},
};
constexpr IndexSpec kFStmtLAcIndexes[] = {
    primary("StmtID;Seq;AccountFrom"),
};

// Totals of a statement line.
constexpr FieldSpec kFStmtLToFields[] = {
    {"StmtID", integer, 0, kRequired},
    {"Seq", integer, 0, kRequired},
    {"TotalLineSeq", integer, 0, kRequired},
    {"SeqEntered", autoInc},
};
constexpr IndexSpec kFStmtLToIndexes[] = {
    primary("StmtID;Seq;TotalLineSeq"),
    {"StmtIDTotalLineSeq", "StmtID;TotalLineSeq"},
    {"SeqEntered1", "StmtID;Seq;SeqEntered"},
};

// Control row of statement numbering.
constexpr FieldSpec kFStmtCtlFields[] = {
    {"NextStmtID", integer},
};

// Bank accounts.
constexpr FieldSpec kBankFields[] = {
    {"BankID", integer},
    {"BankName", string, 40},
    {"BankGLAccountID", integer},
    {"CurrencyID", integer},
};
constexpr IndexSpec kBankIndexes[] = {
    primary("BankID"),
    {"BankName1", "BankName", kUniqueNoCase},
    plain("CurrencyID"),
    plain("BankGLAccountID"),
};

constexpr TableSpec kTables[] = {
    {"GLAccnt", kGLAccntFields, kGLAccntIndexes},
    {"GLAcSub1", kGLAcSubFields, kGLAcSubIndexes},
    {"GLAcSub2", kGLAcSubFields, kGLAcSubIndexes},
    {"GLAcSub3", kGLAcSubFields, kGLAcSubIndexes},
    {"GLActual", kGLActualFields, kGLActualIndexes},
    {"GLBudget", kGLActualFields, kGLActualIndexes},
    {"GLHist", kGLHistFields, kGLHistIndexes},
    {"JV", kJVFields, kJVIndexes},
    {"JVDet", kJVDetFields, kJVDetIndexes},
    {"JVCtl", kJVCtlFields, {}},
    {"FStmt", kFStmtFields, kFStmtIndexes},
    {"FStmtLin", kFStmtLinFields, kFStmtLinIndexes},
    {"FStmtLAc", kFStmtLAcFields, kFStmtLAcIndexes},
    {"FStmtLTo", kFStmtLToFields, kFStmtLToIndexes},
    {"FStmtCtl", kFStmtCtlFields, {}},
    {"Bank", kBankFields, kBankIndexes},
};

}  // namespace

std::span<const TableSpec> ledgerTables() { return kTables; }

}  // namespace quillon::store::schema
