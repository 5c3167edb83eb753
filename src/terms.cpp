#include "terms.h"

#include <QDir>

#include <array>

#include "keyvalue.h"
#include "paths.h"
#include "safefile.h"
#include "text.h"
#include "windowinterface.h"

bool defaultTerms = false;

namespace {

struct DefaultTerm {
    const char *fileKey;
    const char *text;
};

constexpr std::array<DefaultTerm, Term::Count> defaults {{
    {"sr-action", "Short Rest"},
    {"er-action", "Extended Rest"},
    {"ap-resource", "Action Point"},
    {"sw-action", "Second Wind"},
    {"td-action", "Total Defence"},
    {"b-state", "Bloodied"},
    {"hs-resource", "Healing Surge"},
    {"hs-value", "Surge Value"},
    {"dst-action", "Death Saving Throw"},
    {"thp-resource", "Temporary HP"},
    {"m-state", "Marked"},
}};

std::array<QString, Term::Count> terms;

void replaceTerm(const KeyValue &entry)
{
    for (size_t i = 0; i < defaults.size(); ++i) {
        if (entry.key == QLatin1String(defaults[i].fileKey))
            terms[i] = entry.value;
    }
}

} // namespace

void setDefaultTerms()
{
    for (size_t i = 0; i < defaults.size(); ++i)
        terms[i] = QString::fromLatin1(defaults[i].text);
    defaultTerms = true;
}

void loadTerms()
{
    setDefaultTerms();
    defaultTerms = false;
    QByteArray bytes;
    if (readTextFile(dataRoot + QDir::separator() + QStringLiteral("terms.txt"), bytes)
        != FileText::Read)
        return;
    const QList<QByteArray> lines = toLF(bytes).split('\n');
    for (const QByteArray &line : lines) {
        KeyValue entry;
        if (!parseKeyValue(line, Escapes::Resolve, entry))
            break;
        replaceTerm(entry);
    }
    windows().refreshTerms();
}

QString term(int index)
{
    return terms[static_cast<size_t>(index)];
}

QString termKey(int index)
{
    return term(index).toLower().replace(u' ', u'-');
}

QString termKeyPlural(int index)
{
    return termKey(index) + u's';
}
