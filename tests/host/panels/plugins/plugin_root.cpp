// Test support: the root object of a small plug-in, which carries its metadata.
#include <QObject>

#include "tests/host/panels/plugins/behaving_plugin.h"

#ifdef HAS_OTHER_IID
#define TEST_IID "org.labelcut.SomethingElse/1"
#else
#define TEST_IID LabelcutPDEPlugin_iid
#endif

namespace labelcut::test {

constinit const std::string_view kBehaviour = BEHAVIOUR;

#ifdef MISSES_A_SYMBOL
extern int isDefinedNowhere();
#endif

#ifdef OFFERS_NO_PANELS
class Root : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TEST_IID FILE "plugin.json")
};
#else
class Root : public QObject, public PDEPluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TEST_IID FILE "plugin.json")
    Q_INTERFACES(labelcut::PDEPluginFactory)
public:
    Root() {
        construct();
#ifdef MISSES_A_SYMBOL
        isDefinedNowhere();
#endif
    }
    std::unique_ptr<PDEPlugin> create(const PDESystem&) override {
        return createPrincipal();
    }
};
#endif

} // namespace labelcut::test

#include "plugin_root.moc"
