#include "shell/Rights.h"

namespace quillon::shell {
namespace {

constexpr RightGroup kGroups[] = {{"General", "General", ""},
                                  {"AP", "AP", ""},
                                  {"AR", "AR", ""},
                                  {"GL", "GL", ""},
                                  {"Inv", "Inventory", "Inventory"},
                                  {"PO", "Inventory", "Purchasing"},
                                  {"SO", "Inventory", "Sales"},
                                  {"Sales", "Sales Analysis", ""},
                                  {"Mfg", "Mfg", ""}};

constexpr Right kRights[] = {
    {"General", "Your Company", "YourCompany"},
    {"General", "Banks", "Banks"},
    {"General", "Bank Book", "BankBook"},
    {"General", "Bank Reconciliation", "BankRec"},
    {"General", "Currencies", "Currencies"},
    {"General", "Pack/Repair", "PackRepair"},
    {"General", "Import", "Import"},
    {"General", "Security", "Security"},
    {"General", "Purge Old Data", "Purge"},
    {"AP", "Vendors", "Vendors"},
    {"AP", "AP Invoices", "APInvoices"},
    {"AP", "AP Payments", "APCheques"},
    {"AP", "AP Reports", "APReports"},
    {"AP", "Vendor Types", "VendorTypes"},
    {"AR", "Customers", "Customers"},
    {"AR", "AR Invoices", "ARInvoices"},
    {"AR", "AR Payments", "ARPayments"},
    {"AR", "AR Reports", "ARReports"},
    {"AR", "Salesmen", "Salesmen"},
    {"AR", "Customer Types", "CustomerTypes"},
    {"AR", "Taxes", "Taxes"},
    {"GL", "GL Accounts", "GLAccounts"},
    {"GL", "JVs", "JVs"},
    {"GL", "GL Budget", "GLBudget"},
    {"GL", "GL Reports", "GLReports"},
    {"GL", "GL Totals", "GLBalances"},
    {"GL", "GL History", "GLHistory"},
    {"Inv", "Items", "Items"},
    {"Inv", "Physical Count", "PhysicalCount"},
    {"Inv", "Adjustments", "InvAdjustments"},
    {"Inv", "Inventory Reports", "InvReports"},
    {"Inv", "Item Types", "ItemTypes"},
    {"Inv", "Warehouses", "Warehouses"},
    {"Inv", "Inventory Totals", "InvTotals"},
    {"Inv", "Inventory History", "InvHistory"},
    {"Inv", "Item Subtypes", "ItemSubtypes"},
    {"Inv", "Lots", "Lots"},
    {"PO", "Purchase Orders", "PurchaseOrders"},
    {"PO", "Purchase Receipts", "InvReceipts"},
    {"PO", "Purchase Order Reports", "POReports"},
    {"PO", "Vendor Items", "VendorItems"},
    {"PO", "Purchase History", "PurchaseHistory"},
    {"PO", "Purchases Reports", "PurchasesReports"},
    {"SO", "Sales Orders", "SalesOrders"},
    {"SO", "Shipments", "Shipments"},
    {"SO", "Sales Order Reports", "SOReports"},
    {"SO", "Carriers", "Carriers"},
    {"SO", "Price Lists", "PriceLists"},
    {"SO", "Prices", "Prices"},
    {"Sales", "Sales History", "SalesHistory"},
    {"Sales", "Sales Reports", "SalesReports"},
    {"Sales", "Sales Charts", "SalesCharts"},
    {"Mfg", "Manufacturing Orders", "MfgOrders"},
    {"Mfg", "Manufacturing Receipts", "MfgReceipts"},
    {"Mfg", "Manufacturing Reports", "MfgReports"},
    {"Mfg", "Resources", "Resources"},
};

}  // namespace

std::span<const Right> allRights() { return kRights; }
std::span<const RightGroup> rightGroups() { return kGroups; }

}  // namespace quillon::shell
