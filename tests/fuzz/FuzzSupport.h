#pragma once

// What every fuzz target shares: invariants that stop the run with a message,
// quiet engine chatter, and the input as bytes or as a file.

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace sorvane::fuzz {

// Prints the broken invariant (and up to 4,000 bytes of detail) and aborts, so
// libFuzzer keeps the input.
[[noreturn]] void fail(const char *what, const QByteArray &detail = {});

// Drops the engine's debug and info lines; warnings still reach stderr. Once per process.
void quietMessages();

// The input without a copy; valid for the call only.
QByteArray bytes(const uint8_t *data, size_t size);

// Replaces the file's contents, creating its folder; aborts when it cannot.
void writeFile(const QString &path, const QByteArray &contents);

// False when any text in the JSON value cannot survive a trip through UTF-8
// (unpaired surrogates, which the parser takes from \uD800 escapes).
bool utf8Representable(const QJsonValue &value);

} // namespace sorvane::fuzz

#define FUZZ_CHECK(condition, ...)                                                                                     \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            ::sorvane::fuzz::fail(#condition __VA_OPT__(, ) __VA_ARGS__);                                              \
    } while (false)
