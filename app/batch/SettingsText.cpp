#include "batch/SettingsText.h"

#include <QJsonDocument>

namespace {

constexpr int NumberPrecision = 15;

/// Reads the words of one text, a character at a time.
class Splitter
{
public:
    void Take(QChar character)
    {
        if (m_escaped)
            TakeEscaped(character);
        else if (!m_quote.isNull())
            TakeQuoted(character);
        else
            TakePlain(character);
    }

    bool Finish(QStringList& words)
    {
        EndWord();
        words = m_words;
        return m_quote.isNull() && m_depth == 0 && !m_escaped;
    }

private:
    bool IsInList() const { return m_depth > 0; }

    void TakeEscaped(QChar character)
    {
        m_escaped = false;
        if (IsInList() || (character != m_quote && character != QLatin1Char('\\')))
            m_word.append(QLatin1Char('\\')); // JSON sees to its own escapes
        m_word.append(character);
    }

    void TakeQuoted(QChar character)
    {
        m_escaped = character == QLatin1Char('\\') && m_quote == QLatin1Char('"');
        if (m_escaped)
            return;
        if (character != m_quote || IsInList())
            m_word.append(character);
        if (character == m_quote)
            m_quote = QChar();
    }

    void TakePlain(QChar character)
    {
        const bool opensQuote =
            character == QLatin1Char('"') || (character == QLatin1Char('\'') && !IsInList());
        if (character.isSpace() && !IsInList()) {
            EndWord();
            return;
        }
        m_hasWord = true;
        if (opensQuote)
            m_quote = character;
        if (character == QLatin1Char('['))
            ++m_depth;
        if (character == QLatin1Char(']') && IsInList())
            --m_depth;
        if (!opensQuote || IsInList())
            m_word.append(character);
    }

    void EndWord()
    {
        if (m_hasWord)
            m_words.append(m_word);
        m_word.clear();
        m_hasWord = false;
    }

    QStringList m_words;
    QString m_word;
    QChar m_quote;
    int m_depth = 0;
    bool m_hasWord = false;
    bool m_escaped = false;
};

} // namespace

QString SettingsText::FromValue(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return QString::number(value.toDouble(), 'g', NumberPrecision);
    case QJsonValue::Array:
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    default:
        return value.toString();
    }
}

QStringList SettingsText::Lines(const operations::Settings& settings)
{
    QStringList lines;
    const QJsonObject values = settings.ToJson();
    const QVector<operations::SettingsField> fields = settings.Fields();
    for (const operations::SettingsField& field : fields)
        lines.append(field.name + QLatin1Char('=') + FromValue(values.value(field.name)));
    return lines;
}

bool SettingsText::Split(const QString& text, QStringList& words)
{
    Splitter splitter;
    for (const QChar character : text)
        splitter.Take(character);
    return splitter.Finish(words);
}
