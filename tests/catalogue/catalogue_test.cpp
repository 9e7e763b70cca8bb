// The model catalogue (what `posprint models` and docs/models.md tell a person) held against
// the drivers themselves: every model is there once with its driver's identity, its keys are
// exactly the ones the driver asks for and in that order, and every value does to the
// driver's configuration what the catalogue says: a word that changes the configuration
// changes it, one that keeps the default keeps it, letter case and any other value behave as
// stated. A catalogue that lies about a key or a value fails here.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "drivers/ticket/STB112/nx_stb112.h"
#include "frame/driver_base.h"
#include "frame/model_catalogue.h"
#include "support/bytes.h"

extern "C" {
APrinter* create_KpITALORA();
APrinter* create_KpLX300();
APrinter* create_KpPLUS();
APrinter* create_Q1Driver();
APrinter* create_STB112Driver();
APrinter* create_STB60Driver();
APrinter* create_STB80Driver();
APrinter* create_KpTM295();
APrinter* create_KpTM300();
APrinter* create_KpTMT70();
APrinter* create_KpVKP80II();
APrinter* create_KpZEBRA();
}

namespace {

using Factory = APrinter* (*)();

Factory FactoryOf(const std::string& name) {
  static const std::map<std::string, Factory> factories = {
      {"create_KpITALORA", create_KpITALORA},       {"create_KpLX300", create_KpLX300},
      {"create_KpPLUS", create_KpPLUS},             {"create_Q1Driver", create_Q1Driver},
      {"create_STB112Driver", create_STB112Driver}, {"create_STB60Driver", create_STB60Driver},
      {"create_STB80Driver", create_STB80Driver},   {"create_KpTM295", create_KpTM295},
      {"create_KpTM300", create_KpTM300},           {"create_KpTMT70", create_KpTMT70},
      {"create_KpVKP80II", create_KpVKP80II},       {"create_KpZEBRA", create_KpZEBRA},
  };
  const auto found = factories.find(name);
  return found == factories.end() ? nullptr : found->second;
}

std::unique_ptr<APrinter> Make(const CatalogueModel& model) {
  const Factory factory = FactoryOf(model.factory);
  return std::unique_ptr<APrinter>(factory ? factory() : nullptr);
}

// A parameter collection that notes every key the driver asks for, in order.
class RecordingParameters : public IParameterCollection {
 public:
  void Set(const std::string& key, const std::string& value) {
    values_.Set(Nx_Stringa::FromUtf8(key), Nx_Stringa::FromUtf8(value));
  }
  const IParameter* GetParameter(const Nx_Stringa& key) const override {
    const std::string name = key.ToUtf8();
    bool seen = false;
    for (const std::string& asked : asked_) seen = seen || asked == name;
    if (!seen) asked_.push_back(name);
    return values_.GetParameter(key);
  }
  const std::vector<std::string>& Asked() const { return asked_; }

 private:
  ParameterCollection values_;
  mutable std::vector<std::string> asked_;
};

// Everything configuration decides, as hex: the configuration block, and on the STB112 the
// port mode, which the driver object keeps itself.
std::string Configured(APrinter& driver, const std::map<std::string, std::string>& pairs) {
  auto* parameters = new RecordingParameters();
  for (const auto& pair : pairs) parameters->Set(pair.first, pair.second);
  driver.Configure(Nx_Smartp<IParameterCollection>(parameters));
  const auto* base = dynamic_cast<DriverBase*>(&driver);
  if (!base || !base->ConfigBlock()) return "no configuration";
  std::string state(static_cast<const char*>(base->ConfigBlock()), base->ConfigSize());
  if (const auto* stb112 = dynamic_cast<STB112::Nx_STB112*>(&driver)) state += stb112->Crypted() ? '\1' : '\0';
  return posprint::test::ToHex(state);
}

std::string SwapCase(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    else if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

std::string Narrow(const wchar_t* text) {
  std::string out;
  for (; text && *text; ++text) out += static_cast<char>(*text);
  return out;
}

TEST(Catalogue, ListsEveryModelOnceInTheOrderOfTheIdentities) {
  const std::vector<CatalogueModel>& catalogue = ModelCatalogue();
  ASSERT_EQ(catalogue.size(), kModelCount);
  ASSERT_EQ(kModelCount, 12u);
  for (std::size_t i = 0; i < kModelCount; ++i) {
    EXPECT_STREQ(catalogue[i].factory, kModelIdentities[i].factory);
    EXPECT_EQ(&catalogue[i].Identity(), &kModelIdentities[i]);
  }
}

TEST(Catalogue, EachDriverCarriesTheIdentityShown) {
  for (const CatalogueModel& model : ModelCatalogue()) {
    SCOPED_TRACE(model.factory);
    std::unique_ptr<APrinter> driver = Make(model);
    ASSERT_TRUE(driver) << "factory not linked";
    const ModelIdentity& identity = model.Identity();
    const PrinterInfo& info = driver->Info();
    EXPECT_EQ(info.modelName.ToUtf8(), Narrow(identity.modelName));
    Nx_Stringa component;
    driver->GetComponentName(component);
    EXPECT_EQ(component.ToUtf8(), Narrow(identity.componentName));
    EXPECT_EQ(info.timeout1, identity.timeout1);
    EXPECT_EQ(info.timeout2, identity.timeout2);
    EXPECT_STREQ(info.terminator, identity.terminator);
  }
}

TEST(Catalogue, KeysAreTheOnesTheDriverReadsInItsOrder) {
  for (const CatalogueModel& model : ModelCatalogue()) {
    SCOPED_TRACE(model.factory);
    std::unique_ptr<APrinter> driver = Make(model);
    ASSERT_TRUE(driver);
    auto* parameters = new RecordingParameters();
    Nx_Smartp<IParameterCollection> owner(parameters);
    driver->Configure(owner);
    std::vector<std::string> listed;
    for (const CatalogueKey& key : model.keys) listed.push_back(key.key);
    EXPECT_EQ(parameters->Asked(), listed);
  }
}

TEST(Catalogue, EveryValueDoesWhatTheCatalogueSays) {
  for (const CatalogueModel& model : ModelCatalogue()) {
    std::unique_ptr<APrinter> driver = Make(model);
    ASSERT_TRUE(driver) << model.factory;
    const std::string byDefault = Configured(*driver, {});
    for (const CatalogueKey& key : model.keys) {
      SCOPED_TRACE(std::string(model.factory) + " " + key.key);
      auto with = [&](const std::string& value) { return Configured(*driver, {{key.key, value}}); };
      const std::string otherwise = with("no-such-value");
      if (key.otherwiseKeepsDefault) EXPECT_EQ(otherwise, byDefault) << "any other value";
      else EXPECT_NE(otherwise, byDefault) << "any other value";
      EXPECT_EQ(with(""), model.emptyIsOtherValue ? otherwise : byDefault) << "an empty value";

      for (const CatalogueValue& word : key.words) {
        const std::string configured = with(word.value);
        if (word.keepsDefault) EXPECT_EQ(configured, byDefault) << word.value;
        else EXPECT_NE(configured, byDefault) << word.value;
        const std::string swapped = SwapCase(word.value);
        if (swapped == word.value) continue;
        if (key.wordCase == WordCase::kAny) EXPECT_EQ(with(swapped), configured) << swapped << " (any case)";
        else EXPECT_EQ(with(swapped), otherwise) << swapped << " (exact case)";
      }
      for (const CatalogueValue& number : key.numberExamples) {
        if (number.keepsDefault) EXPECT_EQ(with(number.value), byDefault) << number.value;
        else EXPECT_NE(with(number.value), byDefault) << number.value;
      }
    }
  }
}

// Words that change the configuration do so differently: two words of one key that the
// catalogue describes differently must not configure the same.
TEST(Catalogue, DifferentlyDescribedWordsConfigureDifferently) {
  for (const CatalogueModel& model : ModelCatalogue()) {
    std::unique_ptr<APrinter> driver = Make(model);
    ASSERT_TRUE(driver) << model.factory;
    for (const CatalogueKey& key : model.keys) {
      SCOPED_TRACE(std::string(model.factory) + " " + key.key);
      for (std::size_t i = 0; i < key.words.size(); ++i) {
        for (std::size_t j = i + 1; j < key.words.size(); ++j) {
          const CatalogueValue& a = key.words[i];
          const CatalogueValue& b = key.words[j];
          const bool same = std::strcmp(a.effect, b.effect) == 0;
          const std::string configuredA = Configured(*driver, {{key.key, a.value}});
          const std::string configuredB = Configured(*driver, {{key.key, b.value}});
          if (same) EXPECT_EQ(configuredA, configuredB) << a.value << " / " << b.value;
          else EXPECT_NE(configuredA, configuredB) << a.value << " / " << b.value;
        }
      }
    }
  }
}

TEST(Catalogue, EveryKeyIsDescribed) {
  for (const CatalogueModel& model : ModelCatalogue()) {
    SCOPED_TRACE(model.factory);
    EXPECT_TRUE(model.printer && *model.printer);
    EXPECT_TRUE(model.page && *model.page);
    ASSERT_FALSE(model.statuses.empty());
    EXPECT_EQ(model.statuses.front().code, 100);
    for (const CatalogueKey& key : model.keys) {
      SCOPED_TRACE(key.key);
      EXPECT_TRUE(key.defaultText && *key.defaultText);
      EXPECT_TRUE(key.otherwise && *key.otherwise);
      EXPECT_TRUE(!key.words.empty() || key.numbers) << "neither words nor numbers";
      EXPECT_EQ(key.numbers == nullptr, key.numberExamples.empty()) << "numbers need examples, and only they";
    }
  }
}

}  // namespace
