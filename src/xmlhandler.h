// Reads XML as a flow of values, each with the path of the element or attribute that it stands in.
#pragma once

#include <QByteArray>
#include <QString>

class QXmlStreamReader;

// Drives the handlers of the two XML forms. A path is "/", then the name and "/" of each open
// element, then the name of an attribute, or "#end" when an element ends.
class XmlHandler {
public:
    XmlHandler() = default;
    virtual ~XmlHandler() = default;
    Q_DISABLE_COPY(XmlHandler)

    // False when the bytes aren't well-formed XML, or are made to keep a reader busy; the values
    // before the fault have then been handed over. Where they are allowed, element names may hold
    // brackets, as in <Feat[2]>; a path has them as they stand.
    enum class BracketsInNames { Refused, Allowed };
    bool read(const QByteArray &bytes, BracketsInNames brackets = BracketsInNames::Refused);

protected:
    virtual void onBegin() { }
    virtual void onEnd() { }
    // Called for each attribute, each run of text between two tags, and, with an empty text, for
    // the end of each element. False passes over the other attributes of an element.
    virtual bool value(const QString &path, const QString &text) = 0;

    const QString &path() const { return m_path; }
    // Number of elements begun so far: attributes of one element see the same number.
    int elementCount() const { return m_elementCount; }

private:
    void addText(QXmlStreamReader &xml, const QByteArray &bytes, BracketsInNames brackets);
    void beginElement(const QXmlStreamReader &xml);
    QString nameOf(const QXmlStreamReader &xml) const;

    QString m_path;
    int m_elementCount = 0;
    bool m_hasNewNames = false; // the reader sees others than the text has
};
