// Reads whatever it is given as a registration file. What is accepted must be written and read
// again as the same list. Built with clang this is a target for its fuzzer; tst_registration_fuzz
// calls it with the corpus in registration-corpus and with changed copies of it.
#include "widgets/RegistrationFile.h"

#include <QBuffer>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
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
