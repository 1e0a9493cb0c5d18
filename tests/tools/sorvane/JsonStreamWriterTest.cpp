#include "JsonStreamWriter.h"

#include <gtest/gtest.h>

namespace sorvane::cli {
namespace {

// Streams a value through the writer the way the verify output does: containers
// opened and closed, everything else handed over whole.
void stream(JsonStreamWriter &w, const BundleJSON &value)
{
    if (const auto *object = value.asObject()) {
        w.beginObject();
        for (const auto &[key, member] : *object) {
            w.key(key);
            stream(w, member);
        }
        w.end();
    } else if (const auto *array = value.asArray()) {
        w.beginArray();
        for (const BundleJSON &element : *array)
            stream(w, element);
        w.end();
    } else {
        w.value(value);
    }
}

TEST(JsonStreamWriter, WritesWhatSerializeWritesForTheWhole)
{
    const BundleJSON record = BundleJSON::object({{"id", "a\"b"}, {"n", 3}, {"x", 0.5}, {"on", false}});
    const BundleJSON documents[] = {
        BundleJSON::object({{"reports", BundleJSON::array()}, {"integrity", BundleJSON::object()}}),
        BundleJSON::object({{"items", BundleJSON::array({record, record})}, {"order", BundleJSON::array({"a"})}}),
        BundleJSON::object({{"deep", BundleJSON::array({BundleJSON::array({BundleJSON::object({{"r", record}})})})},
            {"last", BundleJSON::array({BundleJSON::array(), BundleJSON::object()})}}),
    };
    for (const BundleJSON &document : documents) {
        QString written;
        {
            QTextStream out(&written);
            JsonStreamWriter w(out);
            stream(w, document);
            w.finish();
        }
        EXPECT_EQ(written, QString::fromUtf8(document.serialize()));
    }
}

} // namespace
} // namespace sorvane::cli
