// Limits of carrying out OUTPUT MODIFY: a change to a few of many objects, many groups, conditions
// over many cells.
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <pugixml.hpp>

#include "bench/limits.h"
#include "host/changes/cell_expression.h"
#include "host/changes/change_engine.h"

namespace vornwout {
namespace {

/// Every hundredth object has this subtype.
constexpr const char* kWanted = "Coefficients";

std::string subtypeOf(int i) { return i % 100 == 0 ? kWanted : "Descriptive Statistics"; }

std::unique_ptr<Document> makeDocument(int objects) {
  auto document = std::make_unique<Document>(1, "", false);
  constexpr int kPerHeading = 100;
  DocumentObject heading;
  for (int i = 0; i < objects; ++i) {
    if (i % kPerHeading == 0) {
      if (i > 0) document->append(std::move(heading));
      heading = {};
      heading.type = ObjectType::kHeading;
    }
    DocumentObject& object = heading.children.emplace_back();
    object.type = ObjectType::kTable;
    object.command = "REGRESSION";
    object.run = i / kPerHeading + 1;
    object.subtype = subtypeOf(i);
    object.label = fmt::format("Table {}", i);
  }
  document->append(std::move(heading));
  return document;
}

/// The same objects as XML.
std::string xmlOf(int objects) {
  std::string xml = "<document>";
  for (int i = 0; i < objects; ++i) {
    xml += fmt::format(
        "<object type=\"table\" command=\"REGRESSION\" run=\"{}\" subtype=\"{}\" label=\"Table "
        "{}\" "
        "visible=\"true\"/>",
        i / 100 + 1, subtypeOf(i), i);
  }
  return xml + "</document>";
}

ModifyEvent hidingEvent(bool visible) {
  ModifyEvent event;
  event.types[static_cast<std::size_t>(ObjectType::kTable)] = true;
  event.conditions.subtypes.push_back(kWanted);
  event.properties.emplace().visible = visible;
  return event;
}

void growth(const Effort& effort, std::vector<LimitResult>& results) {
  const int objects = effort.isSmoke ? 1000 : 100'000;
  const auto document = makeDocument(objects);
  const std::string text = xmlOf(objects);
  pugi::xml_document xml;
  xml.load_buffer(text.data(), text.size());
  bool visible = true;
  const auto apply = [&](int groups) {
    ModifyRequest request;
    for (int i = 0; i < groups; ++i) {
      visible = !visible;
      request.events.push_back(hidingEvent(visible));
    }
    ChangeEngine engine(request, {});
    engine.apply(*document);
    if (engine.counts().modified != static_cast<std::size_t>(objects / 100)) {
      throw std::runtime_error("the objects were not changed");
    }
    engine.commit();
  };
  const Medians one = mediansInTurn(
      effort, [&] { apply(1); },
      [&] {
        for (pugi::xml_node node : xml.document_element().children()) {
          if (std::strcmp(node.attribute("type").value(), "table") != 0) continue;
          if (std::strcmp(node.attribute("subtype").value(), kWanted) != 0) continue;
          node.attribute("visible").set_value(visible);
        }
      });
  LimitResult loop;
  loop.name = fmt::format("changing 1 % of {} objects : a pugixml loop", objects);
  loop.measured = one.first / one.second;
  loop.limit = 0.1;
  loop.detail = fmt::format("{:.2f} ms against {:.2f} ms", one.first * 1e3, one.second * 1e3);
  results.push_back(loop);

  const Medians groups = mediansInTurn(
      effort, [&] { apply(11); }, [&] { apply(1); });
  LimitResult ten;
  ten.name = "eleven groups : one";
  ten.measured = groups.first / groups.second;
  ten.limit = 11.5;
  results.push_back(ten);
}

void conditions(const Effort& effort, std::vector<LimitResult>& results) {
  const std::size_t cells = effort.isSmoke ? 10'000 : 10'000'000;
  std::vector<double> values(cells);
  for (std::size_t i = 0; i < cells; ++i) values[i] = static_cast<double>(i % 1000);
  std::vector<std::uint8_t> chosen(cells);
  const CellExpression expression = CellExpression::compile("x>=10andx<500|abs(x-900)<3");
  std::vector<double> times;
  for (int i = 0; i < effort.rounds; ++i) {
    times.push_back(secondsOf([&] { expression.evaluate(values, chosen); }));
  }
  LimitResult result;
  result.name = fmt::format("a condition over {} cells, ns per cell", cells);
  result.measured = median(times) / static_cast<double>(cells) * 1e9;
  result.limit = 5;
  results.push_back(result);
}

}  // namespace

std::vector<LimitResult> changeLimits(const Effort& effort) {
  std::vector<LimitResult> results;
  growth(effort, results);
  conditions(effort, results);
  return results;
}

}  // namespace vornwout
