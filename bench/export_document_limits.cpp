// Limits of the documents of an export: writing one, reading one, and refusing a hostile one.
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "bench/limits.h"
#include "bench/peak_memory.h"
#include "platform/exportspec/export_xml.h"
#include "platform/exportspec/schema_reader.h"
#include "platform/exportspec/schema_texts.h"

namespace vornwout {
namespace {

constexpr int kRepeats = 1000;

/// A report with links, and images beside it, of about `bytes`.
ExportSpec specOf(std::size_t bytes) {
  ExportSpec spec;
  spec.global.setName("quarterly &amp; yearly figures");
  spec.contents.setLayers(ExportContentsSpec::LAYERS_TYPE::VISIBLE);
  spec.report.setOptionPresent(true);
  spec.report.setDocumentFile("/srv/reports/2026/quarter-3/sales by region.html");
  spec.report.setTitle("Sales by region &lt;draft&gt;");
  spec.png.setOptionPresent(true);
  spec.png.setPercentSize(150, "150");
  spec.png.setDepth(ExportPNGSpec::DEPTH::TRUE24BIT);
  std::string xml;
  for (int i = 0; xml.size() < bytes; ++i) {
    spec.report.addURL(fmt::format("Branch {} \"North & South\"", i),
                       fmt::format("https://example.org/branches/{}?year=2026&quarter=3", i));
    ExportXML().convertToXML(spec, xml);
  }
  return spec;
}

/// Xerces-C as it comes, with a schema that it keeps.
class Yardstick {
 public:
  Yardstick() {
    using xercesc::XMLUni;
    xercesc::XMLPlatformUtils::Initialize();
    pool_ = std::make_unique<xercesc::XMLGrammarPoolImpl>();
    reader_.reset(xercesc::XMLReaderFactory::createXMLReader(
        xercesc::XMLPlatformUtils::fgMemoryManager, pool_.get()));
    reader_->setFeature(XMLUni::fgXercesSchema, true);
    reader_->setFeature(XMLUni::fgXercesDynamic, false);
    reader_->setContentHandler(&handler_);
    reader_->setErrorHandler(&handler_);
    const std::string_view schema = exportDocumentSchema();
    const xercesc::MemBufInputSource source(bytesOf(schema), schema.size(), "schema");
    reader_->loadGrammar(source, xercesc::Grammar::SchemaGrammarType, true);
    reader_->setFeature(XMLUni::fgXercesUseCachedGrammarInParse, true);
  }

  void read(const std::string& xml) {
    const xercesc::MemBufInputSource source(bytesOf(xml), xml.size(), "document");
    reader_->parse(source);
  }

 private:
  static const XMLByte* bytesOf(std::string_view text) {
    return reinterpret_cast<const XMLByte*>(text.data());
  }

  class Handler : public xercesc::DefaultHandler {
   public:
    void error(const xercesc::SAXParseException&) override {
      throw std::runtime_error("the yardstick refuses a valid document");
    }
  };

  Handler handler_;
  std::unique_ptr<xercesc::XMLGrammarPool> pool_;
  std::unique_ptr<xercesc::SAX2XMLReader> reader_;
};

void ordinary(const Effort& effort, std::vector<LimitResult>& results) {
  const int repeats = effort.isSmoke ? 1 : kRepeats;
  Yardstick yardstick;
  for (const std::size_t bytes : {500U, 2000U, 20'000U}) {
    const ExportSpec spec = specOf(bytes);
    std::string xml;
    ExportXML().convertToXML(spec, xml);
    const Medians medians = mediansInTurn(
        effort,
        [&] {
          for (int i = 0; i < repeats; ++i) ExportXML().convertToXML(spec, xml);
        },
        [&] {
          for (int i = 0; i < repeats; ++i) readExportXml(xml);
        });
    const Medians beside = mediansInTurn(
        effort,
        [&] {
          for (int i = 0; i < repeats; ++i) readExportXml(xml);
        },
        [&] {
          for (int i = 0; i < repeats; ++i) yardstick.read(xml);
        });
    const auto add = [&](const char* what, double seconds, double limit) {
      LimitResult result;
      result.name = fmt::format("{} an export document of {} bytes, us", what, xml.size());
      result.measured = seconds / repeats * 1e6;
      result.limit = limit;
      // The promise is about documents of two kilobytes.
      result.isPromised = bytes == 2000U;
      results.push_back(result);
    };
    add("writing", medians.first, 5);
    add("reading", medians.second, 40);
    results.back().detail =
        fmt::format("{:.2f} of Xerces-C SAX2 with a kept schema", beside.first / beside.second);
  }
}

std::string repeated(const std::function<std::string(int)>& piece, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += piece(i);
  return text;
}

void hostile(std::vector<LimitResult>& results) {
  struct Case {
    const char* name;
    std::string xml;
  };
  const std::array cases = {
      Case{"1,000,000 attributes",
           "<outputExport" +
               repeated([](int i) { return fmt::format(" a{}=\"\"", i); }, 1'000'000) + "/>"},
      Case{"depth 100,000", repeated([](int) { return "<outputExport>"; }, 100'000)},
      Case{
          "entities in entities",
          "<!DOCTYPE a [<!ENTITY b0 'ha'>" +
              repeated([](int i) { return fmt::format("<!ENTITY b{} '&b{};&b{};'>", i + 1, i, i); },
                       60) +
              "]><outputExport>&b60;</outputExport>"},
      Case{"an entity from outside", "<!DOCTYPE a SYSTEM 'file:///etc/passwd'><outputExport/>"},
      Case{"one text of 4 MB", "<outputExport><global name=\"" + std::string(4'000'000, 'a') +
                                   "\" x=\"\"/></outputExport>"},
      Case{"130,000 links, the last without its texts",
           "<outputExport><report>" +
               repeated([](int) { return "<link first=\"a\" second=\"b\"/>"; }, 130'000) +
               "<link/></report></outputExport>"}};
  for (const Case& c : cases) {
    bool isRefused = false;
    double seconds = 0;
    const double bytes = peakBytesOf([&] {
      seconds = secondsOf([&] {
        try {
          readExportXml(c.xml);
        } catch (const XmlError&) {
          isRefused = true;
        }
      });
    });
    if (!isRefused) throw std::runtime_error(std::string(c.name) + " were taken");
    LimitResult time;
    time.name = fmt::format("refusing {}, ms", c.name);
    time.measured = seconds * 1e3;
    time.limit = 100;
    results.push_back(time);
    LimitResult memory;
    memory.name = fmt::format("refusing {}, MB", c.name);
    memory.measured = bytes / 1e6;
    memory.limit = 64;
    results.push_back(memory);
  }
}

}  // namespace

std::vector<LimitResult> exportDocumentLimits(const Effort& effort) {
  std::vector<LimitResult> results;
  ordinary(effort, results);
  hostile(results);
  return results;
}

}  // namespace vornwout
