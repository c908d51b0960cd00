// A settings file that anything may have been written into: the program starts with it, and says of
// each number in it that makes no sense which one it is.

#include "settings/Config.h"
#include "settings/StoredSettings.h"
#include "tests/fuzz/FuzzedStore.h"

#include <QSettings>
#include <QStringList>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static FuzzedStore store;
    store.write(data, size, [] { return QSettings().fileName(); });
    const Config settings;
    for (const QString &found : StoredSettings::outOfRange(QSettings())) {
        if (!found.contains('='))
            std::abort();
    }
    return 0;
}
