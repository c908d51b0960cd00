// A registration file: what was read is written again and read back the same.

#include "widgets/RegistrationFile.h"

#include <QBuffer>

#include <cstdint>
#include <cstdlib>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    QBuffer input(&bytes);
    input.open(QIODevice::ReadOnly);
    const auto items = RegistrationFile::read(input);
    if (!items)
        return 0;

    QByteArray again;
    QBuffer output(&again);
    output.open(QIODevice::ReadWrite);
    if (!RegistrationFile::write(output, *items) || output.size() > input.size())
        abort();
    output.seek(0);
    const auto back = RegistrationFile::read(output);
    if (!back || !(*back == *items))
        abort();
    return 0;
}
