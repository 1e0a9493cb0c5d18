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

TEST(ManifestTextReader, AgreesWithTheWholeDocumentOnEveryText)
{
    const QByteArray head = R"({"format":"sorvane.bundle","format_version":2,"min_reader_version":1,)";
    const QByteArray item = R"({"id":"a","media_type":"image","assets":{"full":{"path":"media/a.jpg","bytes":3}}})";
    const QByteArray all = head
        + R"("bundle_id":"b","title":"T","created_utc":"2026-01-02T03:04:05Z","created_by":{"app":"x","z":1},)"
          R"("flavor":"f","include_originals":true,"counts":{"items":1},"derivatives":{"tile":{}},)"
          R"("playback":{"interval_seconds":4,"flow":{"q":1}},"display":{"per_screen":[{"screen":1}]},)"
          R"("players":[{"os":"linux"}],"branding":{"display_name":"B"},"extra":[[0]],"items":[)"
        + item + "]}";
    const struct {
        const char *name;
        QByteArray text;
    } rows[] = {
        {"every member", all},
        {"list first, spaces everywhere",
            " \n{ \"items\" : [ {\"id\" : \"a\"} , 7 , \"x\" , null ] ,\t\"title\":\"t\" } \r\n"},
        {"empty list", head + R"("items":[ ]})"},
        {"brackets and quotes inside strings", head + R"("items":[{"id":"a]}\"[{","title":"\\"}]})"},
        {"entries that are not objects", head + R"("items":[1,true,[],"s",-2.5e3,{},null,false])"},
        {"no list", head + R"("title":"x"})"},
        {"list not an array", head + R"("items":{"id":"a"}})"},
        {"escaped names", head + R"("it\u0065ms":[{"id":"a"}],"t\itle":"T","\u0066lavor":"f"})"},
        {"repeated names: the last counts",
            head + R"("items":[{"id":"a"}],"title":"1","items":[{"id":"b"}],"title":"2"})"},
        {"repeated other names count once", head + R"("a":1,"\u0061":2,"b":[],"\ud800":0,"\udc00":0,"items":[]})"},
        {"a name that only looks like the list", head + "\"\xEF\xBB\xBFitems\":[{\"id\":\"a\"}]}"},
        {"a later list that is not an array", head + R"("items":[{"id":"a"}],"items":5})"},
        {"many entries, two halves", head + R"("items":[)" + entries(2500, item) + "]}"},
        {"byte order mark", "\xEF\xBB\xBF" + head + R"("items":[]})"},
        {"escapes Qt takes",
            head
                + R"("title":"\x\ud800\udc00x\/","items":[{"id":"\u00e9\0)"
                  "\\\xDB"
                  R"("}]})"},
        {"raw control characters and noncharacters", head + "\"title\":\"a\x01\t\xEF\xBF\xBE\",\"items\":[]}"},
        {"names with every escape", head + R"("\b\f\n\r\t\u00C9\u00e9":1,"items":[]})"},
        {"a long other name", head + "\"" + QByteArray(100, 'n') + R"(":1,"items":[]})"},
        {"zeros with any exponent", head + R"("items":[0e999,0.000e-999,-0.0]})"},
        {"numbers Qt takes",
            head + R"("items":[1.,.5,-0,1E+2,4.9e-324,1e308,123456789012345678901234567890,-9223372036854775809]})"},
        {"nested just within the limit", head + R"("items":[)" + QByteArray(1022, '[') + QByteArray(1022, ']') + "]}"},
        {"not an object", R"([{"items":[]}])"},
        // Text that is not JSON.
        {"empty text", ""},
        {"a bare value", "\"s\""},
        {"broken entry", head + R"("items":[{"id":"a"},{"id":}]})"},
        {"broken entry in the second half", head + R"("items":[)" + entries(2500, R"({"id":tru})") + "]}"},
        {"overlong UTF-8", head + "\"items\":[{\"id\":\"\xC0\x80\"}]}"},
        {"UTF-8 surrogate", head + "\"title\":\"\xED\xA0\x80\",\"items\":[]}"},
        {"past U+10FFFF", head + "\"title\":\"\xF4\x90\x80\x80\",\"items\":[]}"},
        {"cut UTF-8", head + "\"title\":\"\xE2\x82\",\"items\":[]}"},
        {"escaped start of a UTF-8 sequence", head + R"("title":"\é","items":[]})"},
        {"short escape", head + R"("title":"\u12","items":[]})"},
        {"overflowing number", head + R"("items":[1e400]})"},
        {"number lost to zero", head + R"("items":[2.4e-324]})"},
        {"number with a plus", head + R"("items":[+1]})"},
        {"leading zero", head + R"("items":[01]})"},
        {"half an exponent", head + R"("items":[1e]})"},
        {"lone minus", head + R"("items":[-]})"},
        {"a word that is not a literal", head + R"("items":[nul]})"},
        {"nested past the limit", head + R"("items":[)" + QByteArray(1023, '[') + QByteArray(1023, ']') + "]}"},
        {"broken after the list", head + R"("items":[{"id":"a"}],"title":}})"},
        {"two entries without a comma", head + R"("items":[{"id":"a"} {"id":"b"}]})"},
        {"trailing comma", head + R"("items":[1,]})"},
        {"trailing comma in an object", head + R"("items":[],})"},
        {"name without a colon", head + R"("items" [1]})"},
        {"name that is not a string", head + R"(items:[]})"},
        {"unterminated list", head + R"("items":[{"id":"a"})"},
        {"unterminated string", head + R"("items":[{"id":"a)"},
        {"ends in a number", R"([1)"},
        {"text ending after a comma", head + R"("items":[1,)"},
        {"text ending after a member", head + R"("items":[],)"},
        {"garbage after the object", head + R"("items":[]} x)"},
        {"mismatched brackets", head + R"("items":[{"id":"a"]]})"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const ManifestTextReader::Result expected = readAsOneDocument(row.text);
        const ManifestTextReader::Result read = ManifestTextReader::read(row.text);
        EXPECT_EQ(read.error.error == QJsonParseError::NoError, expected.error.error == QJsonParseError::NoError)
            << expected.error.errorString().toStdString() << " / " << read.error.errorString().toStdString();
        EXPECT_EQ(read.manifest, expected.manifest);
    }
}

} // namespace
