#include "libvornwout/export/perform_export.h"

#include "libvornwout/export/perform_export_data.h"

namespace vornwout {

PerformExport::PerformExport(BpProcedure& procedure, ExportGlobalSpec::PRINT_OPTION printOption)
    : data_(std::make_unique<PerformExportData>(procedure, printOption)) {}

PerformExport::~PerformExport() = default;

void PerformExport::setDocFileName(const std::string& name) { data_->setDocFileName(name); }

void PerformExport::setImageRootName(const std::string& name) { data_->setImageRootName(name); }

void PerformExport::process(const std::string& exportXml) { data_->process(exportXml); }

}  // namespace vornwout
