// Every screen of the program and the menu paths that lead to it. What a folder has built, it completes with a maker.
#include "shell/Catalogue.h"

#include "shell/Session.h"

namespace quillon::shell {
namespace {

using form::Opening;

struct ScreenRow {
  const char* className;
  Opening opening;
  const char* right = "";
  const char* displayName = "";
  const char* filterScreen = "";
  bool ofCompany = true;
};

constexpr ScreenRow kScreens[] = {
    {"TfrmVendors", Opening::list, "Vendors", "", "TfrmVendorsFilter"},
    {"TfrmAPInvoices", Opening::list, "APInvoices", "AP Invoices", "TfrmAPInvoicesFilter"},
    {"TfrmAPCheques", Opening::list, "APCheques", "AP Payments", "TfrmAPChequesFilter"},
    {"TfrmVendorTypes", Opening::plain, "VendorTypes", "Vendor Types"},
    {"TfrmAPReports", Opening::plain, "APReports", "AP Reports"},
    {"TfrmCustomers", Opening::list, "Customers", "", "TfrmCustomersFilter"},
    {"TfrmARInvoices", Opening::list, "ARInvoices", "AR Invoices", "TfrmARInvoicesFilter"},
    {"TfrmARPayments", Opening::list, "ARPayments", "AR Payments", "TfrmARPaymentsFilter"},
    {"TfrmSalesmen", Opening::plain, "Salesmen"},
    {"TfrmCusTypes", Opening::plain, "CustomerTypes", "Customer Types"},
    {"TfrmItems", Opening::list, "Items", "", "TfrmItemsFilter"},
    {"TfrmPriceLists", Opening::plain, "PriceLists", "Price Lists"},
    {"TfrmPrices", Opening::list, "Prices", "", "TfrmPricesFilter"},
    {"TfrmTaxes", Opening::plain, "Taxes"},
    {"TfrmARReports", Opening::plain, "ARReports", "AR Reports"},
    {"TfrmGLAccounts", Opening::list, "GLAccounts", "GL Accounts", "TfrmGLAccountsFilter"},
    {"TfrmJVs", Opening::list, "JVs", "", "TfrmJVsFilter"},
    {"TfrmGLBudget", Opening::list, "GLBudget", "GL Budget", "TfrmGLBudgetFilter"},
    {"TfrmGLBalances", Opening::list, "GLBalances", "GL Totals", "TfrmGLBalancesFilter"},
    {"TfrmGLHistory", Opening::list, "GLHistory", "GL History", "TfrmGLHistoryFilter"},
    {"TfrmGLReports", Opening::plain, "GLReports", "GL Reports"},
    {"TfrmPhysicalCount", Opening::list, "PhysicalCount", "Physical Count", "TfrmPhysicalCountFilter"},
    {"TfrmInvAdjustments", Opening::list, "InvAdjustments", "Inventory Adjustments", "TfrmInvAdjustmentsFilter"},
    {"TfrmItemTypes", Opening::plain, "ItemTypes", "Item Types"},
    {"TfrmItemSubtypes", Opening::plain, "ItemSubtypes", "Item Subtypes"},
    {"TfrmWarehouses", Opening::plain, "Warehouses"},
    {"TfrmLots", Opening::list, "Lots", "", "TfrmLotsFilter"},
    {"TfrmInvTotals", Opening::filterFirst, "InvTotals", "Inventory Totals", "TfrmInvTotalsFilter"},
    {"TfrmLotTotals", Opening::filterFirst, "InvTotals", "Lot Totals", "TfrmLotTotalsFilter"},
    {"TfrmInvHistory", Opening::list, "InvHistory", "Inventory History", "TfrmInvHistoryFilter"},
    {"TfrmInvReports", Opening::plain, "InvReports", "Inventory Reports"},
    {"TfrmVendorItems", Opening::list, "VendorItems", "Vendor Items", "TfrmVendorItemsFilter"},
    {"TfrmPurchaseOrders", Opening::list, "PurchaseOrders", "Purchase Orders", "TfrmPurchaseOrdersFilter"},
    {"TfrmInvReceipts", Opening::list, "InvReceipts", "Inventory Receipts", "TfrmInvReceiptsFilter"},
    {"TfrmCarriers", Opening::plain, "Carriers"},
    {"TfrmPurchasesCharts", Opening::plain, "PurchaseHistory", "Purchase History"},
    {"TfrmPurchaseHistory", Opening::filterFirst, "PurchaseHistory", "Purchase History", "TfrmPurchaseHistoryFilter"},
    {"TfrmPurchasesReports", Opening::plain, "PurchasesReports", "Purchases Reports"},
    {"TfrmPOReports", Opening::plain, "POReports", "Purchase Order Reports"},
    {"TfrmSalesOrders", Opening::list, "SalesOrders", "Sales Orders", "TfrmSalesOrdersFilter"},
    {"TfrmShipments", Opening::list, "Shipments", "", "TfrmShipmentsFilter"},
    {"TfrmSOReports", Opening::plain, "SOReports", "Sales Order Reports"},
    {"TfrmSalesCharts", Opening::plain, "SalesCharts", "Sales Charts"},
    {"TfrmSalesHistory", Opening::filterFirst, "SalesHistory", "Sales History", "TfrmSalesHistoryFilter"},
    {"TfrmSalesReports", Opening::plain, "SalesReports", "Sales Reports"},
    {"TfrmMfgOrders", Opening::list, "MfgOrders", "Manufacturing Orders", "TfrmMfgOrdersFilter"},
    {"TfrmMfgReceipts", Opening::list, "MfgReceipts", "Manufacturing Receipts", "TfrmMfgReceiptsFilter"},
    {"TfrmResources", Opening::plain, "Resources"},
    {"TfrmMfgReports", Opening::plain, "MfgReports", "Manufacturing Reports"},
    {"TfrmCompany", Opening::plain, "YourCompany", "Your Company"},
    {"TfrmBanks", Opening::plain, "Banks"},
    {"TfrmBankBook", Opening::plain, "BankBook", "Bank Book"},
    {"TfrmBankRec", Opening::plain, "BankRec", "Bank Reconciliation"},
    {"TfrmCurrencies", Opening::plain, "Currencies"},
    {"TfrmPack", Opening::modal, "PackRepair", "Pack/Repair", "", false},
    {"TfrmImport", Opening::modal, "Import"},
    {"TfrmUsers", Opening::plain, "Security"},
    {"TfrmBackupOptions", Opening::modal},
    {"TfrmBackup", Opening::modal, "", "", "", false},
    {"TfrmPurge", Opening::modal, "Purge", "Purge Old Data"},
    {"TfrmCompanyDatabase", Opening::modal, "", "", "", false},
    {"TfrmOrganizeCompanies", Opening::modal, "", "", "", false},
};

struct Path {
  const char* path;
  const char* screen;  // empty: a command of the main window
  const char* name;
};

constexpr Path kMenu[] = {
    {"&File > A&P > &Vendors", "TfrmVendors", "mnuVendors"},
    {"&File > A&P > &Invoices", "TfrmAPInvoices", "mnuAPInvoices"},
    {"&File > A&P > &Payments", "TfrmAPCheques", "mnuAPCheques"},
    {"&File > A&P > &Other > Vendor &Types", "TfrmVendorTypes", "mnuVendorTypes"},
    {"&File > A&P > &Reports", "TfrmAPReports", "mnuAPReports"},
    {"&File > A&R > &Customers", "TfrmCustomers", "mnuCustomers"},
    {"&File > A&R > &Invoices", "TfrmARInvoices", "mnuARInvoices"},
    {"&File > A&R > &Payments", "TfrmARPayments", "mnuARPayments"},
    {"&File > A&R > I&tems", "TfrmItems", "mnuARItems"},
    {"&File > A&R > Price &Lists", "TfrmPriceLists", "mnuARPriceLists"},
    {"&File > A&R > P&rices", "TfrmPrices", "mnuARPrices"},
    {"&File > A&R > &Other > &Salesmen", "TfrmSalesmen", "mnuSalesmen"},
    {"&File > A&R > &Other > &Customer Types", "TfrmCusTypes", "mnuCusTypes"},
    {"&File > A&R > &Other > &Taxes", "TfrmTaxes", "mnuTaxes"},
    {"&File > A&R > R&eports", "TfrmARReports", "mnuARReports"},
    {"&File > &GL > &Accounts", "TfrmGLAccounts", "mnuGLAccounts"},
    {"&File > &GL > &JVs", "TfrmJVs", "mnuJVs"},
    {"&File > &GL > &Budget", "TfrmGLBudget", "mnuGLBudget"},
    {"&File > &GL > &Totals", "TfrmGLBalances", "mnuGLBalances"},
    {"&File > &GL > &History", "TfrmGLHistory", "mnuGLHistory"},
    {"&File > &GL > &Reports", "TfrmGLReports", "mnuGLReports"},
    {"&File > &Inventory > &Items", "TfrmItems", "mnuItems"},
    {"&File > &Inventory > Price &Lists", "TfrmPriceLists", "mnuInvPriceLists"},
    {"&File > &Inventory > &Prices", "TfrmPrices", "mnuInvPrices"},
    {"&File > &Inventory > Physical &Count", "TfrmPhysicalCount", "mnuPhysicalCount"},
    {"&File > &Inventory > &Adjustments", "TfrmInvAdjustments", "mnuInvAdjustments"},
    {"&File > &Inventory > &Other > Item &Types", "TfrmItemTypes", "mnuItemTypes"},
    {"&File > &Inventory > &Other > Item &Subtypes", "TfrmItemSubtypes", "mnuItemSubtypes"},
    {"&File > &Inventory > &Other > &Warehouses", "TfrmWarehouses", "mnuWarehouses"},
    {"&File > &Inventory > &Other > &Lots", "TfrmLots", "mnuLots"},
    {"&File > &Inventory > &Totals", "TfrmInvTotals", "mnuInvTotals"},
    {"&File > &Inventory > Lot T&otals", "TfrmLotTotals", "mnuLotTotals"},
    {"&File > &Inventory > &History", "TfrmInvHistory", "mnuInvHistory"},
    {"&File > &Inventory > &Reports", "TfrmInvReports", "mnuInvReports"},
    {"&File > P&urchase Orders > Vendor &Items", "TfrmVendorItems", "mnuVendorItems"},
    {"&File > P&urchase Orders > &Orders", "TfrmPurchaseOrders", "mnuPurchaseOrders"},
    {"&File > P&urchase Orders > &Receipts", "TfrmInvReceipts", "mnuInvReceipts"},
    {"&File > P&urchase Orders > O&ther > &Vendors", "TfrmVendors", "mnuPOVendors"},
    {"&File > P&urchase Orders > O&ther > &Carriers", "TfrmCarriers", "mnuPOCarriers"},
    {"&File > P&urchase Orders > &Charts", "TfrmPurchasesCharts", "mnuPurchasesCharts"},
    {"&File > P&urchase Orders > &History", "TfrmPurchaseHistory", "mnuPurchaseHistory"},
    {"&File > P&urchase Orders > Purchases Re&ports", "TfrmPurchasesReports", "mnuPurchasesReports"},
    {"&File > P&urchase Orders > R&eports", "TfrmPOReports", "mnuPOReports"},
    {"&File > &Sales Orders > &Customers", "TfrmCustomers", "mnuSOCustomers"},
    {"&File > &Sales Orders > &Orders", "TfrmSalesOrders", "mnuSalesOrders"},
    {"&File > &Sales Orders > &Shipments", "TfrmShipments", "mnuShipments"},
    {"&File > &Sales Orders > &Items", "TfrmItems", "mnuSOItems"},
    {"&File > &Sales Orders > Price &Lists", "TfrmPriceLists", "mnuSOPriceLists"},
    {"&File > &Sales Orders > &Prices", "TfrmPrices", "mnuSOPrices"},
    {"&File > &Sales Orders > C&arriers", "TfrmCarriers", "mnuSOCarriers"},
    {"&File > &Sales Orders > &Reports", "TfrmSOReports", "mnuSOReports"},
    {"&File > Sales &Analysis > &Charts", "TfrmSalesCharts", "mnuSalesCharts"},
    {"&File > Sales &Analysis > &History", "TfrmSalesHistory", "mnuSalesHistory"},
    {"&File > Sales &Analysis > &Reports", "TfrmSalesReports", "mnuSalesReports"},
    {"&File > &Manufacturing > &Items", "TfrmItems", "mnuMfgItems"},
    {"&File > &Manufacturing > &Orders", "TfrmMfgOrders", "mnuMfgOrders"},
    {"&File > &Manufacturing > &Receipts", "TfrmMfgReceipts", "mnuMfgReceipts"},
    {"&File > &Manufacturing > O&ther > &Resources", "TfrmResources", "mnuResources"},
    {"&File > &Manufacturing > R&eports", "TfrmMfgReports", "mnuMfgReports"},
    {"&File > G&eneral > &Your Company", "TfrmCompany", "mnuCompany"},
    {"&File > G&eneral > &Banks", "TfrmBanks", "mnuBanks"},
    {"&File > G&eneral > Bank Boo&k", "TfrmBankBook", "mnuBankBook"},
    {"&File > G&eneral > Bank &Reconciliation", "TfrmBankRec", "mnuBankRec"},
    {"&File > G&eneral > &Currencies", "TfrmCurrencies", "mnuCurrencies"},
    {"&File > G&eneral > &Pack/Repair", "TfrmPack", "mnuPack"},
    {"&File > G&eneral > &Import", "TfrmImport", "mnuImport"},
    {"&File > G&eneral > &Security", "TfrmUsers", "mnuSecurity"},
    {"&File > G&eneral > B&ackup > &Options...", "TfrmBackupOptions", "mnuBackupOptions"},
    {"&File > G&eneral > B&ackup > &Backup...", "TfrmBackup", "mnuBackup"},
    {"&File > G&eneral > P&urge Old Data", "TfrmPurge", "mnuPurge"},
    {"&File > G&eneral > Se&ttings", "", "mnuSettings"},
    {"&File > G&eneral > Reset &Quantity Available", "", "mnuResetQuantityAvailable"},
    {"&File > &Companies > &New Company...", "TfrmCompanyDatabase", "mnuNewCompany"},
    {"&File > &Companies > &Organize Companies...", "TfrmOrganizeCompanies", "mnuOrganizeCompanies"},
    {"&File > E&xit", "", "mnuExit"},
    {"&View > &Company Name", "", "mnuViewCompanyName"},
    {"&View > &Toolbar Text", "", "mnuToolbarText"},
    {"&View > Confirm &Exit", "", "mnuViewConfirmExit"},
    {"&View > &Restore all Minimized Windows", "", "mnuRestoreAll"},
    {"&Help > Quillon Enterprise Accounting &Help", "", "mnuHelp"},
    {"&Help > Technical Support &Info", "", "mnuTechnicalSupport"},
    {"&Help > &About Quillon Enterprise Accounting", "", "mnuAbout"},
};

}  // namespace

void registerCatalogue(form::Registry& registry) {
  for (const ScreenRow& row : kScreens)
    registry.add({.className = row.className,
                  .opening = row.opening,
                  .right = row.right,
                  .displayName = row.displayName,
                  .filterScreen = row.filterScreen,
                  .ofCompany = row.ofCompany});
  for (const Path& path : kMenu) registry.addMenu({.path = path.path, .screen = path.screen, .name = path.name});
}

}  // namespace quillon::shell
