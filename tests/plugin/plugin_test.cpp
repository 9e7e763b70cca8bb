// The driver plug-in as a host sees it: loaded at run time, twelve factories by name.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>

#include "frame/model_identity.h"
#include "platform/aprinter.h"
#include "platform/parameters.h"

namespace {

struct Plugin {
  Plugin() : handle(dlopen(POSPRINT_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL)) {}
  ~Plugin() {
    if (handle) dlclose(handle);
  }
  void* handle;
};

using Factory = APrinter* (*)();

TEST(Plugin, EveryFactoryBuildsItsModel) {
  Plugin plugin;
  ASSERT_NE(plugin.handle, nullptr) << dlerror();
  ASSERT_EQ(kModelCount, 12u);
  for (std::size_t i = 0; i < kModelCount; ++i) {
    const ModelIdentity& identity = kModelIdentities[i];
    SCOPED_TRACE(identity.factory);
    auto factory = reinterpret_cast<Factory>(dlsym(plugin.handle, identity.factory));
    ASSERT_NE(factory, nullptr) << dlerror();
    std::unique_ptr<APrinter> driver(factory());
    ASSERT_NE(driver, nullptr);
    driver->Configure(Nx_Smartp<IParameterCollection>(new ParameterCollection()));
    EXPECT_TRUE(driver->RecordedErrors().empty());
    Nx_Stringa component;
    driver->GetComponentName(component);
    EXPECT_EQ(component, identity.componentName);
    EXPECT_EQ(driver->Info().modelName, identity.modelName);
    EXPECT_EQ(driver->Info().timeout1, identity.timeout1);
    EXPECT_EQ(driver->Info().timeout2, identity.timeout2);
    EXPECT_STREQ(driver->Info().terminator, identity.terminator);
    EXPECT_FALSE(driver->IsOpen());
  }
}

TEST(Plugin, OnlyTheFactoriesAreExported) {
  Plugin plugin;
  ASSERT_NE(plugin.handle, nullptr) << dlerror();
  EXPECT_EQ(dlsym(plugin.handle, "_Z14LookupFontSizePKw"), nullptr);
  EXPECT_EQ(dlsym(plugin.handle, "create_KpTM88"), nullptr);
}

TEST(Identities, TheDeliberatelyOddValues) {
  EXPECT_STREQ(FindIdentity("create_Q1Driver")->modelName, L"QSeries");
  EXPECT_STREQ(FindIdentity("create_Q1Driver")->componentName, L"KpQ1");
  EXPECT_EQ(FindIdentity("create_STB112Driver")->timeout1, 300);
  EXPECT_STREQ(FindIdentity("create_KpPLUS")->terminator, "\r");
  EXPECT_EQ(FindIdentity("create_KpTMT70")->ownCommand, nullptr);
  EXPECT_EQ(FindIdentity("create_KpNONE"), nullptr);
}

}  // namespace
