#include "host/build/svg_sanitizer.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

#include <pugixml.hpp>

#include "host/build/css_filter.h"
#include "host/build/string_xml_writer.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace vornwout {
namespace {

constexpr std::size_t kMaxAttributes = 200;
constexpr std::size_t kMaxNamespaces = 100;  // in force in one place
constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";
constexpr std::array<std::string_view, 4> kMetadataNamespaces = {
    "http://www.w3.org/1999/02/22-rdf-syntax-ns#", "http://purl.org/dc/elements/1.1/",
    "http://purl.org/dc/terms/", "http://creativecommons.org/ns#"};

const std::unordered_set<std::string_view>& allowedElements() {
  static const std::unordered_set<std::string_view> names = {"svg",
                                                             "g",
                                                             "defs",
                                                             "desc",
                                                             "title",
                                                             "metadata",
                                                             "symbol",
                                                             "use",
                                                             "switch",
                                                             "image",
                                                             "style",
                                                             "path",
                                                             "rect",
                                                             "circle",
                                                             "ellipse",
                                                             "line",
                                                             "polyline",
                                                             "polygon",
                                                             "text",
                                                             "tspan",
                                                             "tref",
                                                             "textPath",
                                                             "altGlyph",
                                                             "altGlyphDef",
                                                             "altGlyphItem",
                                                             "glyphRef",
                                                             "font",
                                                             "font-face",
                                                             "font-face-name",
                                                             "font-face-format",
                                                             "glyph",
                                                             "missing-glyph",
                                                             "hkern",
                                                             "vkern",
                                                             "marker",
                                                             "pattern",
                                                             "mask",
                                                             "clipPath",
                                                             "linearGradient",
                                                             "radialGradient",
                                                             "stop",
                                                             "meshgradient",
                                                             "meshpatch",
                                                             "meshrow",
                                                             "hatch",
                                                             "hatchpath",
                                                             "solidcolor",
                                                             "color-profile",
                                                             "view",
                                                             "cursor",
                                                             "a",
                                                             "animate",
                                                             "animateMotion",
                                                             "animateTransform",
                                                             "animateColor",
                                                             "set",
                                                             "mpath",
                                                             "filter",
                                                             "feBlend",
                                                             "feColorMatrix",
                                                             "feComponentTransfer",
                                                             "feComposite",
                                                             "feConvolveMatrix",
                                                             "feDiffuseLighting",
                                                             "feDisplacementMap",
                                                             "feDistantLight",
                                                             "feDropShadow",
                                                             "feFlood",
                                                             "feFuncA",
                                                             "feFuncB",
                                                             "feFuncG",
                                                             "feFuncR",
                                                             "feGaussianBlur",
                                                             "feImage",
                                                             "feMerge",
                                                             "feMergeNode",
                                                             "feMorphology",
                                                             "feOffset",
                                                             "fePointLight",
                                                             "feSpecularLighting",
                                                             "feSpotLight",
                                                             "feTile",
                                                             "feTurbulence"};
  return names;
}

std::string_view prefixOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

std::string_view localOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool isAnimation(std::string_view element) {
  return element == "set" || element.starts_with("animate");
}

/// Names of ASCII only: a parser with other ideas of names could see another name in them.
bool isPlainName(std::string_view name) {
  const auto isLetter = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
  };
  return !name.empty() && isLetter(name.front()) && std::count(name.begin(), name.end(), ':') < 2 &&
         std::all_of(name.begin(), name.end(), [&](char c) {
           return isLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
         });
}

bool isXmlCharacter(char32_t c) {
  return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) ||
         (c >= 0xE000 && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF);
}

void checkCharacters(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const int length = validUtf8Length(text.substr(at));
    if (length == 0)
      throw SvgError(localized("The chart holds a byte that is no character in UTF-8."), at);
    if (!isXmlCharacter(utf8CodePoint(text.substr(at), length))) {
      throw SvgError(localized("The chart holds a character that XML does not allow."), at);
    }
    at += static_cast<std::size_t>(length);
  }
}

/// The code point of "#65" or "#x41"; nothing for what is none.
std::optional<char32_t> characterReference(std::string_view name) {
  const bool isHex = name.starts_with("#x");
  name.remove_prefix(isHex ? 2 : 1);
  if (name.empty() || name.size() > 8) return std::nullopt;
  char32_t code = 0;
  for (const char c : name) {
    char32_t digit = 16;
    if (c >= '0' && c <= '9') digit = static_cast<char32_t>(c - '0');
    if (isHex && c >= 'a' && c <= 'f') digit = static_cast<char32_t>(c - 'a' + 10);
    if (isHex && c >= 'A' && c <= 'F') digit = static_cast<char32_t>(c - 'A' + 10);
    if (digit == 16) return std::nullopt;
    code = code * (isHex ? 16 : 10) + digit;
  }
  if (!isXmlCharacter(code)) return std::nullopt;
  return code;
}

/// Text or attribute value as the parser left it, with its references resolved. The parser would
/// leave a reference that there is not as it stands; that is no XML.
std::string resolved(std::string_view raw) {
  std::string result;
  result.reserve(raw.size());
  for (std::size_t at = 0; at < raw.size();) {
    if (raw[at] == '<')
      throw SvgError(localized("The chart is no well-formed XML: a \"<\" stands in a value."));
    if (raw[at] != '&') {
      result += raw[at++];
      continue;
    }
    const std::size_t end = raw.find(';', at);
    const std::string_view name =
        end == std::string_view::npos ? std::string_view() : raw.substr(at + 1, end - at - 1);
    if (name == "lt") {
      result += '<';
    } else if (name == "gt") {
      result += '>';
    } else if (name == "amp") {
      result += '&';
    } else if (name == "quot") {
      result += '"';
    } else if (name == "apos") {
      result += '\'';
    } else {
      const auto code = name.starts_with('#') ? characterReference(name) : std::nullopt;
      if (!code)
        throw SvgError(localized(
            "The chart is no well-formed XML: it refers to an entity that is not known."));
      appendUtf8(result, *code);
    }
    at = end + 1;
  }
  return result;
}

/// The text in UTF-8, whatever encoding its declaration names.
std::string decoded(std::string_view svg) {
  if (svg.starts_with("\xEF\xBB\xBF")) svg.remove_prefix(3);
  const std::string_view head = svg.substr(0, 200);
  if (!head.starts_with("<?xml")) return std::string(svg);
  const std::string_view declaration = head.substr(0, head.find("?>"));
  const std::size_t name = declaration.find("encoding");
  if (name == std::string_view::npos) return std::string(svg);
  const std::size_t open = declaration.find_first_of("\"'", name);
  const std::size_t close =
      open == std::string_view::npos ? open : declaration.find(declaration[open], open + 1);
  if (close == std::string_view::npos)
    throw SvgError(localized("The chart's XML declaration is wrong."), 0);
  const std::string encoding(declaration.substr(open + 1, close - open - 1));
  const auto found = Encoding::find(encoding);
  if (found == nullptr)
    throw SvgError(localized("The chart is in an encoding that is not known."), 0);
  return found->isUtf8() ? std::string(svg) : found->toUtf8(svg);
}

/// Resolves the references of a parsed document and looks whether all of it is XML.
class ShapeCheck {
 public:
  void check(pugi::xml_document& document) {
    int roots = 0;
    for (pugi::xml_node node = document.first_child(); node; node = node.next_sibling()) {
      switch (node.type()) {
        case pugi::node_element:
          ++roots;
          break;
        case pugi::node_pcdata:
        case pugi::node_cdata:
          if (std::string_view(node.value()).find_first_not_of(" \t\r\n") !=
              std::string_view::npos) {
            throw SvgError(
                localized("The chart is no well-formed XML: a text stands outside of its root."));
          }
          break;
        case pugi::node_doctype:
          if (std::string_view(node.value()).find('[') != std::string_view::npos) {
            throw SvgError(localized("The chart's document type has declarations of its own."));
          }
          break;
        default:
          break;
      }
    }
    if (roots != 1)
      throw SvgError(localized("The chart is no well-formed XML: it has no single root."));
    // Without recursion: how deep it is, is what is to be found out.
    int depth = 1;
    pugi::xml_node node = document.document_element();
    const pugi::xml_node root = node;
    for (;;) {
      checkNode(node);
      if (pugi::xml_node child = node.first_child()) {
        if (++depth > kMaxSvgDepth) {
          throw SvgError(localized("The chart's elements are nested more than 200 deep."));
        }
        node = child;
        continue;
      }
      while (node != root && !node.next_sibling()) {
        node = node.parent();
        --depth;
      }
      if (node == root) return;
      node = node.next_sibling();
    }
  }

 private:
  static void checkNode(pugi::xml_node node) {
    if (node.type() == pugi::node_pcdata) {
      const std::string_view raw = node.value();
      if (raw.find("]]>") != std::string_view::npos) {
        throw SvgError(localized("The chart is no well-formed XML: \"]]>\" stands in a text."));
      }
      node.set_value(resolved(raw).c_str());
    }
    if (node.type() != pugi::node_element) return;
    std::unordered_set<std::string_view> names;
    for (pugi::xml_attribute attribute : node.attributes()) {
      if (!names.insert(attribute.name()).second) {
        throw SvgError(localized("The chart is no well-formed XML: an attribute stands twice."));
      }
      attribute.set_value(resolved(attribute.value()).c_str());
    }
  }
};

/// Takes out what is not allowed, from a document whose depth is known to be bounded.
class Cleaner {
 public:
  void clean(pugi::xml_node root) {
    pushNamespaces(root);
    if (namespaceOf(prefixOf(root.name())).value_or(kSvgNamespace) != kSvgNamespace ||
        localOf(root.name()) != "svg") {
      throw SvgError(localized("The chart is no SVG: its root is another element."));
    }
    if (prefixOf(root.name()).empty() && !root.attribute("xmlns")) {
      // A browser draws nothing without it.
      root.prepend_attribute("xmlns") = "http://www.w3.org/2000/svg";
    }
    popNamespaces();
    cleanElement(root, false);
  }

 private:
  struct Binding {
    std::string prefix;
    std::string uri;
  };

  void pushNamespaces(pugi::xml_node node) {
    marks_.push_back(bindings_.size());
    std::size_t attributes = 0;
    for (const pugi::xml_attribute attribute : node.attributes()) {
      // Each is looked for among all of them, and each name among all namespaces.
      if (++attributes > kMaxAttributes) {
        throw SvgError(localized("The chart has an element with more than 200 attributes."));
      }
      const std::string_view name = attribute.name();
      if (name == "xmlns") {
        bindings_.push_back({"", attribute.value()});
      } else if (name.starts_with("xmlns:")) {
        bindings_.push_back({std::string(name.substr(6)), attribute.value()});
      }
    }
    if (bindings_.size() > kMaxNamespaces) {
      throw SvgError(localized("The chart declares more than 100 namespaces in one place."));
    }
  }

  void popNamespaces() {
    bindings_.resize(marks_.back());
    marks_.pop_back();
  }

  /// Nothing for a prefix that is not declared, and for the default when there is none.
  std::optional<std::string_view> namespaceOf(std::string_view prefix) const {
    for (auto binding = bindings_.rbegin(); binding != bindings_.rend(); ++binding) {
      if (binding->prefix == prefix) return std::string_view(binding->uri);
    }
    return std::nullopt;
  }

  bool isAllowed(pugi::xml_node node, bool inMetadata) const {
    const std::string_view name = node.name();
    if (!isPlainName(name)) return false;
    const std::string_view prefix = prefixOf(name);
    const std::optional<std::string_view> uri = namespaceOf(prefix);
    if (inMetadata && !prefix.empty() && uri) {
      // Prefixed, so that a reader that knows no namespaces sees no element of HTML in it.
      return std::find(kMetadataNamespaces.begin(), kMetadataNamespaces.end(), *uri) !=
             kMetadataNamespaces.end();
    }
    if (uri ? *uri != kSvgNamespace : !prefix.empty()) return false;
    return allowedElements().contains(localOf(name)) && !isHarmfulAnimation(node);
  }

  static bool isHarmfulAnimation(pugi::xml_node node) {
    if (!isAnimation(localOf(node.name()))) return false;
    for (const pugi::xml_attribute attribute : node.attributes()) {
      if (asciiLowered(localOf(attribute.name())) != "attributename") continue;
      const std::string target = foldedAddress(attribute.value());
      const std::string_view local = localOf(target);
      if (local == "href" || local == "src" || local == "style" || local.starts_with("on") ||
          target.starts_with("xml")) {
        return true;
      }
    }
    return false;
  }

  void cleanElement(pugi::xml_node node, bool inMetadata) {
    pushNamespaces(node);
    cleanAttributes(node);
    const std::string_view local = localOf(node.name());
    const bool holdsMetadata = inMetadata || local == "metadata";
    if (local == "style" && !inMetadata) cleanStyle(node);
    for (pugi::xml_node child = node.first_child(); child;) {
      const pugi::xml_node next = child.next_sibling();
      switch (child.type()) {
        case pugi::node_element: {
          // A default namespace of its own may make it another element.
          pushNamespaces(child);
          const bool stays = isAllowed(child, holdsMetadata);
          popNamespaces();
          if (stays) {
            cleanElement(child, holdsMetadata);
          } else {
            node.remove_child(child);
          }
          break;
        }
        case pugi::node_cdata: {
          // The same text, escaped like any other; an empty one is nothing at all.
          const std::string text = child.value();
          if (!text.empty()) {
            node.insert_child_before(pugi::node_pcdata, child).set_value(text.c_str());
          }
          node.remove_child(child);
          break;
        }
        case pugi::node_pcdata:
          break;
        default:
          node.remove_child(child);
          break;
      }
      child = next;
    }
    popNamespaces();
  }

  static void cleanStyle(pugi::xml_node node) {
    // Only text, in one piece: a rule may be spread over several.
    std::string css;
    for (const pugi::xml_node child : node.children()) {
      if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
        css += child.value();
      }
    }
    node.remove_children();
    css = filteredCss(css);
    if (!css.empty()) node.append_child(pugi::node_pcdata).set_value(css.c_str());
  }

  static void cleanAttributes(pugi::xml_node node) {
    for (pugi::xml_attribute attribute = node.first_attribute(); attribute;) {
      const pugi::xml_attribute next = attribute.next_attribute();
      if (!keepAttribute(node, attribute)) node.remove_attribute(attribute);
      attribute = next;
    }
  }

  static bool keepAttribute(pugi::xml_node node, pugi::xml_attribute attribute) {
    const std::string_view name = attribute.name();
    if (!isPlainName(name)) return false;
    if (name == "xmlns" || name.starts_with("xmlns:")) return true;
    const std::string local = asciiLowered(localOf(name));
    if (local.starts_with("on") || asciiLowered(name) == "xml:base") return false;
    if (local == "href" || local == "src") return isInnerAddress(attribute.value());
    static constexpr std::array<std::string_view, 7> kLeading = {
        "ping", "action", "formaction", "srcset", "srcdoc", "handler", "background"};
    if (std::find(kLeading.begin(), kLeading.end(), local) != kLeading.end()) return false;
    const std::string_view value = attribute.value();
    if (isAnimation(localOf(node.name())) &&
        (local == "values" || local == "to" || local == "from" || local == "by")) {
      if (foldedAddress(value).find("script:") != std::string::npos) return false;
    }
    const std::string folded = foldedAddress(value.substr(0, 200));
    for (const std::string_view scheme : {"javascript:", "vbscript:", "data:text/html"}) {
      if (folded.starts_with(scheme)) return false;
    }
    if (local == "style") {
      const std::string css = filteredCss(value);
      if (css.empty()) return false;
      if (css != value) attribute.set_value(css.c_str());
      return true;
    }
    // What an address in a presentation attribute or an animation leads to.
    if (value.find_first_of("(\\") == std::string_view::npos) return true;
    const bool mayLoad = asciiLowered(value).find("url") != std::string::npos ||
                         value.find('\\') != std::string_view::npos;
    return !mayLoad || filteredCss(value) == value;
  }

  std::vector<Binding> bindings_;
  std::vector<std::size_t> marks_;
};

}  // namespace

std::string sanitizeSvg(std::string_view svg) {
  if (svg.size() > kMaxSvgBytes) throw SvgError(localized("The chart is larger than 64 MiB."));
  std::string text = decoded(svg);
  checkCharacters(text);
  pugi::xml_document document;
  // References are resolved here and not by the parser, which lets unknown ones pass.
  constexpr unsigned kParts = pugi::parse_cdata | pugi::parse_ws_pcdata | pugi::parse_doctype |
                              pugi::parse_fragment | pugi::parse_eol;
  const pugi::xml_parse_result result =
      document.load_buffer(text.data(), text.size(), kParts, pugi::encoding_utf8);
  if (!result) {
    throw SvgError(localized("The chart is no well-formed XML: ^1.", result.description()),
                   static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0)));
  }
  ShapeCheck().check(document);
  const pugi::xml_node root = document.document_element();
  Cleaner().clean(root);
  std::string clean;
  StringXmlWriter writer(clean);
  root.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
  return clean;
}

}  // namespace vornwout
