#include "bundle/ManifestTextReader.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

using namespace sorvane;

namespace {

// What reading the text as one document gives: the reader must agree with it exactly,
// whichever way it took.
ManifestTextReader::Result readAsOneDocument(const QByteArray &text)
{
    ManifestTextReader::Result expected;
    const QJsonDocument document = QJsonDocument::fromJson(text, &expected.error);
    if (expected.error.error == QJsonParseError::NoError && document.isObject())
        expected.manifest = BundleManifest::fromJson(document.object());
    return expected;
}

QByteArray entries(int count, const QByteArray &last)
{
    QByteArray list;
    for (int i = 0; i < count; ++i)
        list += R"({"id":"i)" + QByteArray::number(i) + R"(","assets":{"full":{"path":"media/)" + QByteArray::number(i)
            + R"(.jpg","bytes":)" + QByteArray::number(i + 1) + "}}},";
    return list + last;
}

// The manifest fuzzer holds the reader to the same agreement on every input, its seeds
// covering the small texts; only lists long enough to be read in two halves are here.
TEST(ManifestTextReader, AgreesWithTheWholeDocumentOnLongLists)
{
    const QByteArray head = R"({"format":"sorvane.bundle","format_version":2,"min_reader_version":1,"items":[)";
    const QByteArray item = R"({"id":"a","media_type":"image","assets":{"full":{"path":"media/a.jpg","bytes":3}}})";
    for (const QByteArray &text : {head + entries(2500, item) + "]}", head + entries(2500, R"({"id":tru})") + "]}"}) {
        const ManifestTextReader::Result expected = readAsOneDocument(text);
        const ManifestTextReader::Result read = ManifestTextReader::read(text);
        EXPECT_EQ(read.error.error, expected.error.error) << expected.error.errorString().toStdString();
        EXPECT_EQ(read.manifest, expected.manifest);
    }
}

} // namespace
