// posprint models: what each model is and how to configure it, from the model catalogue
// compiled into the host (no plug-in needed). Every model, or the one named.
#include <cstdio>
#include <memory>
#include <string>

#include "model_listing.h"
#include "model_names.h"
#include "subcommand.h"

namespace posprint::host {
namespace {

struct ModelsOptions {
  std::string model;  // empty: every model
  bool json = false;
  bool markdown = false;
};

void Show(const CatalogueModel& model, bool json, bool first) {
  if (json) {
    std::printf("%s\n", ModelJson(model).c_str());
  } else {
    std::printf("%s%s", first ? "" : "\n", ModelText(model).c_str());
  }
}

int Models(const ModelsOptions& options) {
  if (options.markdown) {
    std::printf("%s", CatalogueMarkdown().c_str());
    return kExitOk;
  }
  if (options.model.empty()) {
    bool first = true;
    for (const CatalogueModel& model : ModelCatalogue()) {
      Show(model, options.json, first);
      first = false;
    }
    return kExitOk;
  }
  const ModelIdentity* identity = FindModel(options.model);
  const CatalogueModel* model = identity ? FindCatalogueModel(identity->factory) : nullptr;
  if (!model) {
    std::fprintf(stderr, "posprint models: unknown model \"%s\"; the models are (model, component, factory):\n%s\n",
                 options.model.c_str(), DescribeModels().c_str());
    return kExitUsage;
  }
  Show(*model, options.json, true);
  return kExitOk;
}

}  // namespace

Subcommand AddModelsCommand(CLI::App& parent) {
  auto options = std::make_shared<ModelsOptions>();
  CLI::App* models = parent.add_subcommand(
      "models", "List the printer models: factory, names, time-outs, terminator, own command, "
                "configuration keys with their values and defaults, status numbers");
  models->add_option("model", options->model,
                     "Show only this model: model name (TMT70), component name (KpTMT70) or factory "
                     "(create_KpTMT70), any case")
      ->type_name("MODEL");
  models->add_flag("--json", options->json, "One JSON object a model on stdout");
  models->add_flag("--markdown", options->markdown,
                   "Every model as the Markdown tables of docs/models.md (MODEL and --json do not apply)")
      ->excludes("--json");
  models->footer(
      "Without MODEL: every model, in the order of their factory exports. Exit status 0; 2 for an unknown "
      "model. The same list, as tables: docs/models.md.");
  return {models, [options] { return Models(*options); }};
}

}  // namespace posprint::host
