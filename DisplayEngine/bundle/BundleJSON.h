#pragma once

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace sorvane {

// The JSON value the engine writes manifests with. Unlike QJsonObject it keeps
// object members in insertion order, and it has no null: absent members are
// simply not emitted.
class BundleJSON {
public:
    using Member = std::pair<QString, BundleJSON>;
    using Object = std::vector<Member>;
    using Array = std::vector<BundleJSON>;

    BundleJSON() : m_value(Object {}) { }
    BundleJSON(Object object) : m_value(std::move(object)) { }
    BundleJSON(Array array) : m_value(std::move(array)) { }
    BundleJSON(const QString &text) : m_value(text) { }
    BundleJSON(const char *text) : m_value(QString::fromUtf8(text)) { }
    BundleJSON(qint64 number) : m_value(number) { }
    BundleJSON(int number) : m_value(qint64(number)) { }
    BundleJSON(double number) : m_value(number) { }
    BundleJSON(bool flag) : m_value(flag) { }

    static BundleJSON object(std::initializer_list<Member> members = {}) { return BundleJSON(Object(members)); }
    static BundleJSON array(std::initializer_list<BundleJSON> values = {}) { return BundleJSON(Array(values)); }

    bool isObject() const { return std::holds_alternative<Object>(m_value); }
    bool isArray() const { return std::holds_alternative<Array>(m_value); }
    const Object *asObject() const { return std::get_if<Object>(&m_value); }
    const Array *asArray() const { return std::get_if<Array>(&m_value); }
    const QString *asString() const { return std::get_if<QString>(&m_value); }
    const qint64 *asInt() const { return std::get_if<qint64>(&m_value); }
    const double *asDouble() const { return std::get_if<double>(&m_value); }
    const bool *asBool() const { return std::get_if<bool>(&m_value); }

    // Appends a member to an object (no-op on other kinds).
    void insert(const QString &key, BundleJSON value);
    // Appends the member only when the optional holds a value.
    template <typename T> void insert(const QString &key, const std::optional<T> &value)
    {
        if (value)
            insert(key, BundleJSON(*value));
    }
    // Appends to an array (no-op on other kinds).
    void append(BundleJSON value);

    // A member of an object, or nullptr.
    const BundleJSON *find(const QString &key) const;

    // UTF-8 JSON text. Pretty output indents by two spaces and ends with a newline.
    QByteArray serialize(bool pretty = true) const;
    // Appends the pretty text of this value as it reads nested `depth` levels deep,
    // for writers that emit a large document piece by piece.
    void appendPretty(QByteArray &out, int depth) const { write(out, true, depth); }

    bool operator==(const BundleJSON &) const = default;

private:
    void write(QByteArray &out, bool pretty, int depth) const;
    std::variant<Object, Array, QString, qint64, double, bool> m_value;
};

} // namespace sorvane
