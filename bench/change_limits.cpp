// Limits of carrying out OUTPUT MODIFY: a change to a few of many objects, many groups, conditions
// over many cells.
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <malloc.h>
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

/// A document, and the same as XML, with every hundredth object shown or hidden by turns.
class Subject {
 public:
  explicit Subject(int objects) : objects_(objects), document_(makeDocument(objects)) {
    const std::string text = xmlOf(objects);
    xml_.load_buffer(text.data(), text.size());
  }

  void change(int groups) {
    ModifyRequest request;
    for (int i = 0; i < groups; ++i) {
      visible_ = !visible_;
      request.events.push_back(hidingEvent(visible_));
    }
    ChangeEngine engine(request, {});
    engine.apply(*document_);
    if (engine.counts().modified != static_cast<std::size_t>(objects_ / 100)) {
      throw std::runtime_error("the objects were not changed");
    }
    engine.commit();
  }

  /// The first command on a document, and the first one behind it that moved its objects.
  void changeAsNew() {
    document_->editRoot();
    change(1);
  }

  void changeXml() {
    for (pugi::xml_node node : xml_.document_element().children()) {
      if (std::strcmp(node.attribute("type").value(), "table") != 0) continue;
      if (std::strcmp(node.attribute("subtype").value(), kWanted) != 0) continue;
      node.attribute("visible").set_value(visible_);
    }
  }

 private:
  int objects_;
  std::unique_ptr<Document> document_;
  pugi::xml_document xml_;
  bool visible_ = true;
};

LimitResult against(std::string name, const Medians& medians, double limit) {
  LimitResult result;
  result.name = std::move(name);
  result.measured = medians.first / medians.second;
  result.limit = limit;
  result.detail =
      fmt::format("{:.3f} ms against {:.3f} ms", medians.first * 1e3, medians.second * 1e3);
  return result;
}

void growth(const Effort& effort, std::vector<LimitResult>& results) {
  const int most = effort.isSmoke ? 10'000 : 100'000;
  for (const int objects : {most / 100, most / 10, most}) {
    Subject subject(objects);
    results.push_back(against(fmt::format("changing 1 % of {} objects : a pugixml loop", objects),
                              mediansInTurn(
                                  effort, [&] { subject.change(1); }, [&] { subject.changeXml(); }),
                              0.1));
    results.back().isPromised = objects == most;
    results.push_back(
        against(fmt::format("the first change of {} objects : a pugixml loop", objects),
                mediansInTurn(
                    effort, [&] { subject.changeAsNew(); }, [&] { subject.changeXml(); }),
                0.1));
    results.back().isPromised = false;
    if (objects != most) continue;
    results.push_back(against("ten groups : one",
                              mediansInTurn(
                                  effort, [&] { subject.change(10); }, [&] { subject.change(1); }),
                              10.5));
  }
}

/// Bytes that the heap holds for undoing a change of every hundredth of `objects`.
double undoBytes(int objects) {
  const auto document = makeDocument(objects);
  document->index();
  ModifyRequest request;
  request.events.push_back(hidingEvent(false));
  ChangeEngine engine(request, {});
  const std::size_t before = mallinfo2().uordblks;
  engine.apply(*document);
  return static_cast<double>(mallinfo2().uordblks - before);
}

void undoMemory(const Effort& effort, std::vector<LimitResult>& results) {
  const int most = effort.isSmoke ? 10'000 : 100'000;
  LimitResult result;
  result.name = fmt::format("undo of 1 % of {} objects, bytes per change", most);
  result.measured = undoBytes(most) / (most / 100);
  // The state of an object, and where it is found: nothing of the other 99 %.
  result.limit = 512;
  result.detail = fmt::format("{:.0f} bytes per change of {} objects",
                              undoBytes(most / 10) / (most / 1000), most / 10);
  results.push_back(result);
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
  undoMemory(effort, results);
  conditions(effort, results);
  return results;
}

}  // namespace vornwout
