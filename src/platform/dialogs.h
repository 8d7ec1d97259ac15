// The desktop's dialogs for files, folders and fonts. Behind it: Qt's own (screens/desktop_dialogs.h), a script in
// tests.
#pragma once
#include <QString>
#include <optional>

struct chosen_font {
    QString name;
    double size = 0; // in points
    bool bold = false, italic = false;
    bool operator==(const chosen_font &other) const = default;
};

class dialog_service {
public:
    virtual ~dialog_service() = default;
    // A path to write to; nothing on Cancel. It does not ask about an existing file: the caller has its own question.
    // proposal may be a bare file name; filter such as "*.mdb".
    virtual std::optional<QString> ShowSave(const QString &proposal, const QString &filter) = 0;
    // A file that is there; proposal is the one chosen so far, or "". Patterns are joined by blanks, or
    // stand behind words: "words|*.a;*.b|words|*.c".
    virtual std::optional<QString> ShowOpen(const QString &proposal, const QString &filter) = 0;
    virtual std::optional<QString> ShowFolder(const QString &proposal) = 0;
    virtual std::optional<chosen_font> ShowFont(const chosen_font &proposal) = 0;
};
