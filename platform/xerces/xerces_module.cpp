// The XML parser behind platform/exportspec/schema_reader.h, a module of its own.
//
// One parser for each schema is kept with its compiled grammar. Nothing is resolved or fetched, and
// a document type declaration ends the reading before anything in it counts.
#include <array>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "platform/exportspec/xml_module.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

using xercesc::Attributes;
using xercesc::SAXParseException;
using xercesc::XMLString;
using xercesc::XMLUni;

/// Appends UTF-16 as UTF-8. Parsers give no halves of characters but in hostile texts.
void appendUtf8(std::string& out, const XMLCh* text) {
  for (; *text != 0; ++text) {
    const char32_t unit = *text;
    if (unit < 0x80) {
      out += static_cast<char>(unit);
      continue;
    }
    const bool isPair = unit >= 0xD800 && unit < 0xDC00 && text[1] >= 0xDC00 && text[1] < 0xE000;
    if (isPair) {
      vornwout::appendUtf8(out, 0x10000 + ((unit - 0xD800) << 10U) + (text[1] - 0xDC00U));
      ++text;
    } else {
      vornwout::appendUtf8(out, unit);
    }
  }
}

std::string utf8Of(const XMLCh* text) {
  std::string result;
  if (text != nullptr) appendUtf8(result, text);
  return result;
}

/// Memory as the system gives it. What fails in the middle of a parse is not given back by the
/// parser, so nothing but a system without memory is to make it fail.
class SystemMemory : public xercesc::MemoryManager {
 public:
  void* allocate(XMLSize_t size) override {
    void* const memory = std::malloc(size);
    if (memory == nullptr) throw xercesc::OutOfMemoryException();
    return memory;
  }
  void deallocate(void* memory) override { std::free(memory); }
  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
};

xercesc::MemoryManager* systemMemory() {
  static SystemMemory memory;
  return &memory;
}

class Handler : public xercesc::DefaultHandler {
 public:
  void setReceiver(const ElementReceiver* receive) { receive_ = receive; }

  void startElement(const XMLCh* const, const XMLCh* const localName, const XMLCh* const,
                    const Attributes& attributes) override {
    if (receive_ == nullptr) return;
    name_.clear();
    appendUtf8(name_, localName);
    const XMLSize_t count = attributes.getLength();
    if (attributes_.size() < count) attributes_.resize(count);
    for (XMLSize_t i = 0; i < count; ++i) {
      XmlAttribute& attribute = attributes_[i];
      attribute.name.clear();
      attribute.value.clear();
      appendUtf8(attribute.name, attributes.getLocalName(i));
      appendUtf8(attribute.value, attributes.getValue(i));
    }
    (*receive_)(name_, std::span(attributes_).first(count));
  }

  void startDTD(const XMLCh* const, const XMLCh* const, const XMLCh* const) override {
    throw XmlError("it has a document type declaration");
  }
  xercesc::InputSource* resolveEntity(const XMLCh* const, const XMLCh* const) override {
    throw XmlError("it refers to something outside of itself");
  }
  void warning(const SAXParseException& exception) override { refuse(exception); }
  void error(const SAXParseException& exception) override { refuse(exception); }
  void fatalError(const SAXParseException& exception) override { refuse(exception); }

 private:
  [[noreturn]] static void refuse(const SAXParseException& exception) {
    throw XmlError(fmt::format("line {}, column {}: {}", exception.getLineNumber(),
                               exception.getColumnNumber(), utf8Of(exception.getMessage())));
  }

  const ElementReceiver* receive_ = nullptr;
  std::string name_;
  std::vector<XmlAttribute> attributes_;
};

/// A parser that knows one schema.
class Parser {
 public:
  explicit Parser(std::string_view schema)
      : pool_(new (systemMemory()) xercesc::XMLGrammarPoolImpl(systemMemory())),
        reader_(xercesc::XMLReaderFactory::createXMLReader(systemMemory(), pool_.get())) {
    reader_->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    reader_->setFeature(XMLUni::fgSAX2CoreValidation, true);
    reader_->setFeature(XMLUni::fgXercesDynamic, false);
    reader_->setFeature(XMLUni::fgXercesSchema, true);
    reader_->setFeature(XMLUni::fgXercesLoadSchema, false);
    reader_->setFeature(XMLUni::fgXercesLoadExternalDTD, false);
    reader_->setFeature(XMLUni::fgXercesDisableDefaultEntityResolution, true);
    reader_->setContentHandler(&handler_);
    reader_->setErrorHandler(&handler_);
    reader_->setLexicalHandler(&handler_);
    reader_->setEntityResolver(&handler_);
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(schema.data()),
                                            schema.size(), "schema");
    reader_->loadGrammar(source, xercesc::Grammar::SchemaGrammarType, true);
    reader_->setFeature(XMLUni::fgXercesUseCachedGrammarInParse, true);
    pool_->lockPool();
  }

  void read(std::string_view xml, const ElementReceiver& receive) {
    // In UTF-8 whatever the document says, for its bounds were checked as such.
    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(),
                                      "document");
    source.setEncoding(XMLUni::fgUTF8EncodingString);
    source.setCopyBufToStream(false);
    handler_.setReceiver(&receive);
    reader_->parse(source);
  }

 private:
  Handler handler_;
  std::unique_ptr<xercesc::XMLGrammarPool> pool_;
  std::unique_ptr<xercesc::SAX2XMLReader> reader_;
};

class XercesModule : public XmlModule {
 public:
  void initialize() override {
    const std::lock_guard lock(mutex_);
    if (isInitialized_) return;
    try {
      xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr,
                                            nullptr, systemMemory());
    } catch (const xercesc::XMLException& exception) {
      throw std::runtime_error(utf8Of(exception.getMessage()));
    }
    isInitialized_ = true;
  }

  void read(int number, std::string_view schema, std::string_view xml,
            const ElementReceiver& receive) override {
    const std::lock_guard lock(mutex_);
    std::unique_ptr<Parser>& kept = parsers_.at(static_cast<std::size_t>(number));
    // Taken out while it works: what a parser is like behind an exception nobody says.
    std::unique_ptr<Parser> parser = std::move(kept);
    try {
      if (parser == nullptr) parser = std::make_unique<Parser>(schema);
      parser->read(xml, receive);
    } catch (const xercesc::OutOfMemoryException&) {
      throw std::bad_alloc();
    } catch (const xercesc::XMLException& exception) {
      throw XmlError(utf8Of(exception.getMessage()));
    }
    kept = std::move(parser);
  }

 private:
  std::mutex mutex_;
  bool isInitialized_ = false;
  std::array<std::unique_ptr<Parser>, 2> parsers_;
};

}  // namespace
}  // namespace vornwout

extern "C" __attribute__((visibility("default"))) vornwout::XmlModule* vornXmlModule() {
  // Never destroyed: it serves until the process ends, and its parsers must go before the platform.
  static auto* const module = new vornwout::XercesModule;
  return module;
}
