#include "store/schema/TableSpecs.h"

// AR invoices and payments, sales orders and shipments.
namespace quillon::store::schema {
namespace {

using enum FieldType;

// AR invoice headers.
constexpr FieldSpec kARInvFields[] = {
    {"ARInvoiceID", integer},
    {"CustomerID", integer},
    {"ShiptoID", integer},
    {"InvoiceNo", string, 10},
    {"WarehouseID", integer},
    {"Description", string, 60},
    {"InvoiceDate", date},
    {"InvoiceAmount", currency},
    {"PaidAmount", currency},
    {"DiscTakenAmount", currency},
    {"WriteOffAmount", currency},
    {"Owing", currency},
    {"DiscPC", floating},
    {"DiscDays", smallint},
    {"NetDays", smallint},
    {"COD", boolean},
    {"Prepayment", boolean},
    {"TermsText", string, 40},
    {"PurchaseOrderNo", string, 10},
    {"GLPeriod", smallint},
    {"GLYear", smallint},
    {"Printed", boolean},
    {"Posted", boolean},
    {"Tax1ID", integer},
    {"Tax2ID", integer},
    {"Tax1Code", string, 1},
    {"Tax2Code", string, 1},
    {"Tax1Rate", floating},
    {"Tax2Rate", floating},
    {"TaxableAmount1", currency},
    {"TaxableAmount2", currency},
    {"TaxableAmount3", currency},
    {"TaxableAmtCode1", string, 1},
    {"TaxableAmtCode2", string, 1},
    {"TaxableAmtCode3", string, 1},
    {"SOInvoice", boolean},
    {"ExchangeRate", floating},
    {"CurrencyID", integer},
    {"ShipmentID", integer},
    {"OrderNo", string, 10},
    {"POSPmtAmount", currency},
    {"POSPmtPaidBy", smallint},
    {"POSPmtReference", string, 8},
    {"POSPmtBankID", integer},
};
constexpr IndexSpec kARInvIndexes[] = {
    primary("ARInvoiceID"),
    {"CustomerIDInvoiceNo", "CustomerID;InvoiceNo"},
    {"InvoiceNo", "InvoiceNo", kUnique},
    plain("CustomerID"),
    plain("GLYear"),
    plain("GLPeriod"),
    plain("Posted"),
    plain("Printed"),
    descending("InvoiceDateInvoiceNoDESC", "InvoiceDate;InvoiceNo"),
    plain("Owing"),
    plain("CurrencyID"),
    plain("POSPmtBankID"),
};

// AR invoice lines.
constexpr FieldSpec kARInvDetFields[] = {
    {"ARInvoiceID", integer}, {"Seq", integer}, {"Quantity", floating}, {"ItemID", integer}, {"UnitPrice", currency},
    {"TaxCodes", string, 3},  {"Notes", memo},  {"UnitCost", currency}, {"LotID", integer},
};
constexpr IndexSpec kARInvDetIndexes[] = {
    primary("ARInvoiceID;Seq"),
    plain("ItemID"),
    plain("LotID"),
};

// Control row of numbering for AR invoices, sales orders and shipments.
constexpr FieldSpec kARInvCtlFields[] = {
    {"NextInvoiceID", integer}, {"NextInvoiceNo", integer},  {"NextOrderID", integer},
    {"NextOrderNo", integer},   {"NextShipmentID", integer},
};

// AR payment headers.
constexpr FieldSpec kARPmtFields[] = {
    {"PaymentID", integer}, {"ChequeNo", string, 8}, {"CustomerID", integer}, {"BankID", integer},
    {"GLYear", smallint},   {"GLPeriod", smallint},  {"PaymentDate", date},   {"ChequeAmount", currency},
    {"Posted", boolean},    {"Reconciled", boolean}, {"PaidBy", smallint},
};
constexpr IndexSpec kARPmtIndexes[] = {
    primary("PaymentID"),
    plain("ChequeNo"),
    {"CustomerIDChequeNo", "CustomerID;ChequeNo"},
    plain("BankID"),
    plain("CustomerID"),
    plain("Posted"),
    plain("Reconciled"),
    descending("PaymentDateChequeNoDESC", "PaymentDate;ChequeNo"),
    plain("GLYear"),
    plain("GLPeriod"),
    plain("PaidBy"),
};

// Application of a payment to an invoice.
constexpr FieldSpec kARInvPmtFields[] = {
    {"ARInvoiceID", integer},
    {"PaymentID", integer},
    {"Seq", integer},
    {"PaymentAmount", currency},
    {"DiscTakenAmount", currency},
    {"WriteOffAmount", currency},
    {"WriteOffGLAccountID", integer},
    {"WriteOffSubAccount1ID", integer},
    {"WriteOffSubAccount2ID", integer},
    {"WriteOffSubAccount3ID", integer},
};
constexpr IndexSpec kARInvPmtIndexes[] = {
    primary("ARInvoiceID;PaymentID"),
    {"PaymentIDSeq", "PaymentID;Seq"},
    plain("WriteOffGLAccountID"),
    plain("WriteOffSubAccount1ID"),
    plain("WriteOffSubAccount2ID"),
    plain("WriteOffSubAccount3ID"),
    plain("PaymentID"),
};

// Control row of AR payment numbering.
constexpr FieldSpec kARPmtCtlFields[] = {
    {"NextPaymentID", integer},
};

// Sales order and quote headers.
constexpr FieldSpec kSOrderFields[] = {
    {"OrderID", integer},
    {"OrderNo", string, 10},
    {"OrderDate", date},
    {"RequestedShipDate", date},
    {"CustomerID", integer},
    {"ShiptoID", integer},
    {"PurchaseOrderNo", string, 10},
    {"CarrierID", integer},
    {"FrtPaymentMethod", smallint},
    {"OrderStatus", smallint},
    {"PkSlipPrinted", boolean},
    {"Description", string, 60},
    {"OrderAmount", currency},
    {"Tax1ID", integer},
    {"Tax2ID", integer},
    {"Tax1Code", string, 1},
    {"Tax2Code", string, 1},
    {"Tax1Rate", floating},
    {"Tax2Rate", floating},
    {"TaxableAmount1", currency},
    {"TaxableAmount2", currency},
    {"TaxableAmount3", currency},
    {"TaxableAmtCode1", string, 1},
    {"TaxableAmtCode2", string, 1},
    {"TaxableAmtCode3", string, 1},
    {"NumberOfShipments", smallint},
};
constexpr IndexSpec kSOrderIndexes[] = {
    primary("OrderID"),
    {"OrderNo", "OrderNo", kUnique},
    plain("CustomerID"),
    plain("CarrierID"),
    plain("OrderStatus"),
    plain("RequestedShipDate"),
    descending("OrderDateOrderNoDESC", "OrderDate;OrderNo"),
    plain("PkSlipPrinted"),
};

// Sales order lines.
constexpr FieldSpec kSOrdDetFields[] = {
    {"OrderID", integer},     {"Seq", integer},        {"QtyOrdered", floating},
    {"QtyShipped", floating}, {"Completed", boolean},  {"ItemID", integer},
    {"UnitPrice", currency},  {"TaxCodes", string, 3}, {"Notes", memo},
};
constexpr IndexSpec kSOrdDetIndexes[] = {
    primary("OrderID;Seq"),
    plain("ItemID"),
};

// Shipment headers.
constexpr FieldSpec kShipmentFields[] = {
    {"ShipmentID", integer},
    {"OrderID", integer},
    {"OrderNo", string, 10},
    {"CustomerID", integer},
    {"InvoiceNo", string, 10},
    {"ShippedDate", date},
    {"WarehouseID", integer},
    {"CarrierID", integer},
    {"FrtPaymentMethod", smallint},
    {"Description", string, 60},
    {"GLPeriod", smallint},
    {"GLYear", smallint},
    {"Posted", boolean},
    {"BillOfLadingPrinted", boolean},
};
constexpr IndexSpec kShipmentIndexes[] = {
    primary("ShipmentID"), plain("OrderID"),
    plain("OrderNo"),      plain("CustomerID"),
    plain("WarehouseID"),  plain("CarrierID"),
    plain("InvoiceNo"),    descending("ShippedDateOrderNoDESC", "ShippedDate;OrderNo"),
    plain("Posted"),       plain("BillOfLadingPrinted"),
};

// Shipment lines.
constexpr FieldSpec kShipDetFields[] = {
    {"ShipmentID", integer}, {"Seq", integer},      {"OrderID", integer},  {"QtyShipped", floating},
    {"UnitPrice", currency}, {"Notes", memo},       {"LotID", integer},    {"Lot2ID", integer},
    {"Lot3ID", integer},     {"QtyLot1", floating}, {"QtyLot2", floating}, {"QtyLot3", floating},
};
constexpr IndexSpec kShipDetIndexes[] = {
    primary("ShipmentID;Seq"),
    plain("LotID"),
};

constexpr TableSpec kTables[] = {
    {"ARInv", kARInvFields, kARInvIndexes},
    {"ARInvDet", kARInvDetFields, kARInvDetIndexes},
    {"ARInvCtl", kARInvCtlFields, {}},
    {"ARPmt", kARPmtFields, kARPmtIndexes},
    {"ARInvPmt", kARInvPmtFields, kARInvPmtIndexes},
    {"ARPmtCtl", kARPmtCtlFields, {}},
    {"SOrder", kSOrderFields, kSOrderIndexes},
    {"SOrdDet", kSOrdDetFields, kSOrdDetIndexes},
    {"Shipment", kShipmentFields, kShipmentIndexes},
    {"ShipDet", kShipDetFields, kShipDetIndexes},
};

}  // namespace

std::span<const TableSpec> receivablesTables() { return kTables; }

}  // namespace quillon::store::schema
