#include "store/schema/TableSpecs.h"

// Vendors, the items that they sell, AP invoices, cheques and purchase orders.
namespace quillon::store::schema {
namespace {

using enum FieldType;

// Vendors.
constexpr FieldSpec kVendorFields[] = {
    {"VendorID", integer},
    {"VendorNo", string, 10},
    {"VendorName", string, 40},
    {"AddressLine1", string, 35},
    {"AddressLine2", string, 35},
    {"City", string, 35},
    {"StateProv", string, 20},
    {"ZipCode", string, 10},
    {"Country", string, 20},
    {"Contact", string, 40},
    {"Phone", string, 20},
    {"Fax", string, 20},
    {"EMail", string, 40},
    {"WebPage", string, 30},
    {"Notes", memo},
    {"TaxNo", string, 12},
    {"DefaultInvDescription", string, 40},
    {"DiscPC", floating},
    {"DiscDays", smallint},
    {"NetDays", smallint},
    {"DelayDays", smallint},
    {"CurrencyID", integer},
    {"VendorTypeID", integer},
    {"Suspended", boolean},
};
constexpr IndexSpec kVendorIndexes[] = {
    primary("VendorID"),
    {"VendorNo", "VendorNo", kUniqueNoCase},
    {"VendorName1", "VendorName", kNoCase},
    plain("CurrencyID"),
    plain("VendorTypeID"),
};

// Control row of vendor numbering.
constexpr FieldSpec kVendCtlFields[] = {
    {"NextVendorNo", integer},
    {"NextVendorID", integer},
};

// Vendor types.
constexpr FieldSpec kVendTypeFields[] = {
    {"VendorTypeID", integer},
    {"TypeName", string, 40},
};
constexpr IndexSpec kVendTypeIndexes[] = {
    primary("VendorTypeID"),
    {"TypeName1", "TypeName", kUniqueNoCase},
};

// Balance of a vendor.
constexpr FieldSpec kVBalanceFields[] = {
    {"VendorID", integer},
    {"Balance", currency},
};
constexpr IndexSpec kVBalanceIndexes[] = {
    primary("VendorID"),
};

// Contacts of a vendor.
constexpr FieldSpec kVContactFields[] = {
    {"VendorID", integer},
    {"ContactID", autoInc},
    {"LastName", string, 30},
    {"FirstName", string, 30},
    {"JobTitle", string, 40},
    {"BusinessPhone", string, 20},
    {"BusinessPhoneExt", string, 10},
    {"BusinessPhone2", string, 20},
    {"BusinessPhone2Ext", string, 10},
    {"HomePhone", string, 20},
    {"Fax", string, 20},
    {"Cellular", string, 20},
    {"Pager", string, 20},
    {"EMail", string, 40},
    {"Notes", memo},
};
constexpr IndexSpec kVContactIndexes[] = {
    primary("VendorID;ContactID"),
    {"FullName", "LastName;FirstName", kNoCase},
    {"VendorIDFullName", "VendorID;LastName;FirstName", kNoCase},
};

// Items of a vendor, with its codes and costs.
constexpr FieldSpec kVendItemFields[] = {
    {"VItemID", integer},   {"VItemNo", string, 35},   {"VItemDescription", string, 40},
    {"VCost", currency},    {"VCostDate", date},       {"VendorID", integer},
    {"ItemID", integer},    {"QtyPerVItem", floating}, {"Preference", smallint},
    {"Suspended", boolean}, {"Notes", memo},
};
constexpr IndexSpec kVendItemIndexes[] = {
    primary("VItemID"),
    {"VItemNo1", "VItemNo", kNoCase},
    {"VItemDescription1", "VItemDescription", kNoCase},
    plain("VendorID"),
    plain("ItemID"),
    plain("Preference"),
    {"VendorIDVItemNo", "VendorID;VItemNo", kUnique},
};

// AP invoice headers.
constexpr FieldSpec kAPInvFields[] = {
    {"APInvoiceID", integer},  {"VendorID", integer},
    {"InvoiceNo", string, 10}, {"Description", string, 50},
    {"InvoiceDate", date},     {"DueDate", date},
    {"DiscountDate", date},    {"InvoiceAmount", currency},
    {"PaidAmount", currency},  {"DiscountAmount", currency},
    {"DiscPC", floating},      {"DiscountTaken", boolean},
    {"Owing", currency},       {"PurchaseOrderNo", string, 10},
    {"GLPeriod", smallint},    {"GLYear", smallint},
    {"Posted", boolean},       {"CurrencyID", integer},
    {"ReceiptID", integer},
};
constexpr IndexSpec kAPInvIndexes[] = {
    primary("APInvoiceID"), {"VendorIDInvoiceNo", "VendorID;InvoiceNo", kUnique},
    plain("InvoiceNo"),     plain("VendorID"),
    plain("Posted"),        descending("InvoiceDateInvoiceNoDESC", "InvoiceDate;InvoiceNo"),
    plain("DueDate"),       plain("Owing"),
    plain("CurrencyID"),    plain("ReceiptID"),
};

// AP invoice lines.
constexpr FieldSpec kAPInvDetFields[] = {
    {"APInvoiceID", integer},   {"Seq", integer},           {"GLAccountID", integer}, {"SubAccount1ID", integer},
    {"SubAccount2ID", integer}, {"SubAccount3ID", integer}, {"GLAmount", currency},
};
constexpr IndexSpec kAPInvDetIndexes[] = {
    primary("APInvoiceID;Seq"), plain("GLAccountID"),   plain("SubAccount1ID"),
    plain("SubAccount2ID"),     plain("SubAccount3ID"),
};

// Control row of AP invoice numbering.
constexpr FieldSpec kAPInvCtlFields[] = {
    {"NextInvoiceID", integer},
};

// Cheques and other payments.
constexpr FieldSpec kAPCheqFields[] = {
    {"ChequeID", integer},   {"ChequeNo", string, 8}, {"VendorID", integer}, {"BankID", integer},
    {"GLYear", smallint},    {"GLPeriod", smallint},  {"ChequeDate", date},  {"ChequeAmount", currency},
    {"Reconciled", boolean}, {"Posted", boolean},     {"Void", boolean},     {"PaidBy", smallint},
};
constexpr IndexSpec kAPCheqIndexes[] = {
    primary("ChequeID"),
    plain("ChequeNo"),
    {"VendorIDChequeNo", "VendorID;ChequeNo"},
    plain("BankID"),
    plain("VendorID"),
    plain("Posted"),
    plain("Reconciled"),
    descending("ChequeDateChequeNoDESC", "ChequeDate;ChequeNo"),
    plain("GLYear"),
    plain("GLPeriod"),
    plain("PaidBy"),
};

// Application of a payment to an invoice.
constexpr FieldSpec kAPInvChqFields[] = {
    {"APInvoiceID", integer},
    {"ChequeID", integer},
    {"Seq", integer},
    {"PaymentAmount", currency},
};
constexpr IndexSpec kAPInvChqIndexes[] = {
    primary("APInvoiceID;ChequeID"),
    {"ChequeIDSeq", "ChequeID;Seq"},
    plain("ChequeID"),
};

// Control row of payment numbering.
constexpr FieldSpec kAPChqCtlFields[] = {
    {"NextChequeID", integer},
};

// Purchase order headers.
constexpr FieldSpec kPOrderFields[] = {
    {"OrderID", integer},           {"PurchaseOrderNo", string, 10}, {"OrderedBy", string, 10}, {"OrderDate", date},
    {"RequestedReceiptDate", date}, {"VendorID", integer},           {"WarehouseID", integer},  {"CarrierID", integer},
    {"FrtPaymentMethod", smallint}, {"OrderStatus", smallint},       {"Printed", boolean},      {"Comments", memo},
    {"OrderAmount", currency},      {"NumberOfReceipts", smallint},
};
constexpr IndexSpec kPOrderIndexes[] = {
    primary("OrderID"),
    {"PurchaseOrderNo", "PurchaseOrderNo", kUnique},
    plain("VendorID"),
    plain("WarehouseID"),
    plain("CarrierID"),
    plain("OrderStatus"),
    plain("RequestedReceiptDate"),
    descending("OrderDatePOrderNoDESC", "OrderDate;PurchaseOrderNo"),
    plain("Printed"),
};

// Purchase order lines.
constexpr FieldSpec kPOrdDetFields[] = {
    {"OrderID", integer},   {"Seq", integer},     {"QtyOrdered", floating}, {"QtyReceived", floating},
    {"Completed", boolean}, {"VItemID", integer}, {"UnitCost", currency},   {"Notes", memo},
};
constexpr IndexSpec kPOrdDetIndexes[] = {
    primary("OrderID;Seq"),
    plain("VItemID"),
};

constexpr TableSpec kTables[] = {
    {"Vendor", kVendorFields, kVendorIndexes},
    {"VendCtl", kVendCtlFields, {}},
    {"VendType", kVendTypeFields, kVendTypeIndexes},
    {"VBalance", kVBalanceFields, kVBalanceIndexes},
    {"VContact", kVContactFields, kVContactIndexes},
    {"VendItem", kVendItemFields, kVendItemIndexes},
    {"APInv", kAPInvFields, kAPInvIndexes},
    {"APInvDet", kAPInvDetFields, kAPInvDetIndexes},
    {"APInvCtl", kAPInvCtlFields, {}},
    {"APCheq", kAPCheqFields, kAPCheqIndexes},
    {"APInvChq", kAPInvChqFields, kAPInvChqIndexes},
    {"APChqCtl", kAPChqCtlFields, {}},
    {"POrder", kPOrderFields, kPOrderIndexes},
    {"POrdDet", kPOrdDetFields, kPOrdDetIndexes},
};

}  // namespace

std::span<const TableSpec> payablesTables() { return kTables; }

}  // namespace quillon::store::schema
