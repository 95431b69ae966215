// scenario_run.h - what the C++ program of the scenario stands on: its instances, and its transcript on standard
// output.
#ifndef OXAQRYCLN_TESTS_SCENARIO_SCENARIO_RUN_H_
#define OXAQRYCLN_TESTS_SCENARIO_SCENARIO_RUN_H_

#include <initializer_list>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "component/clsQuery.h"

namespace oxaqrycln::testing {

class ScenarioRun {
 public:
  // The arguments are NAME=TEXT: what stands for {NAME} in a text.
  ScenarioRun(int argc, char** argv);

  std::string Filled(std::string_view text) const;

  void New(const std::string& instance) { instances_[instance] = std::make_unique<clsQuery>(); }
  void Drop(const std::string& instance) { instances_.erase(instance); }
  clsQuery& Instance(const std::string& name) { return *instances_.at(name); }

  // Prints a line.
  void Say(std::string_view line) const;
  void Show(std::string_view title, const Variant& result, std::initializer_list<const Variant*> outputs) const;
  void Show(std::string_view title, const Variant& result, std::span<const Variant> outputs) const;

 private:
  std::map<std::string, std::string> texts_;
  std::map<std::string, std::unique_ptr<clsQuery>> instances_;
};

// A scripting context whose request has that body.
Variant PageWithBody(std::string_view body);

}  // namespace oxaqrycln::testing

#endif  // OXAQRYCLN_TESTS_SCENARIO_SCENARIO_RUN_H_
