#include "OptionPages.h"

#include "OptionSections.h"
#include "product.h"

namespace {

/// The lines of an option's text. In the help one of them stands elsewhere.
QStringList textLines(const Option& option) {
    QStringList lines = option.help.lines;
    if (!option.help.lateLine.isEmpty())
        lines.append(option.help.lateLine);
    return lines;
}

QString joined(const QStringList& lines) {
    QStringList trimmed;
    for (const QString& line : lines)
        trimmed.append(line.trimmed());
    return trimmed.join(QLatin1Char(' '));
}

std::vector<OptionListEntry> words(const Option& option) {
    return option.help.list ? option.help.list() : std::vector<OptionListEntry>();
}

QStringList hiddenNames() {
    QStringList names;
    for (const Option* option : optionsOf(OptionSection::Hidden))
        names.append(option->name);
    return names;
}

QString roff(QString text) {
    text.replace(QLatin1Char('\\'), QLatin1String("\\e")).replace(QLatin1Char('-'), QLatin1String("\\-"));
    if (text.startsWith(QLatin1Char('.')) || text.startsWith(QLatin1Char('\'')))
        text.prepend(QLatin1String("\\&"));
    return text;
}

QString roffOption(const Option& option) {
    QString text = QStringLiteral(".TP\n\\fB%1\\fR").arg(roff(option.name));
    if (!option.help.value.isEmpty())
        text += QStringLiteral(" \\fI%1\\fR").arg(roff(option.help.value));
    text += QLatin1Char('\n');
    // A table of values keeps its lines.
    const QStringList lines = textLines(option);
    for (int i = 0; i < lines.size(); ++i)
        text += (lines[i].startsWith(QLatin1Char(' ')) && i > 0 ? QStringLiteral(".br\n") : QString()) +
                roff(lines[i].trimmed()) + QLatin1Char('\n');
    for (const auto& [name, description] : words(option))
        text += QStringLiteral(".br\n\\fB%1\\fR: %2\n").arg(roff(name), roff(description));
    return text;
}

QString markdown(QString text) {
    return text.replace(QLatin1Char('<'), QLatin1String("&lt;"))
        .replace(QLatin1Char('|'), QLatin1String("\\|"));
}

QString markdownOption(const Option& option) {
    const QString value = option.help.value.isEmpty() ? QString() : QLatin1Char(' ') + option.help.value;
    QString text = QStringLiteral("| `%1%2` | %3")
                       .arg(option.name, QString(value).replace(QLatin1Char('|'), QLatin1String("\\|")),
                            markdown(joined(textLines(option))));
    QStringList list;
    for (const auto& [name, description] : words(option))
        list.append(name == description ? QStringLiteral("`%1`").arg(name)
                                        : QStringLiteral("`%1`: %2").arg(name, markdown(description)));
    if (!list.isEmpty())
        text += QLatin1String("<br>") + list.join(QLatin1String("<br>"));
    return text + QLatin1String(" |\n");
}

/// What completes the value of an option: nothing for one without, else a line of shell.
QString completionOfValue(const Option& option) {
    if (option.kind == OptionKind::Flag)
        return {};
    QStringList names;
    for (const auto& entry : words(option))
        names.append(entry.first);
    if (!names.isEmpty())
        return QStringLiteral("COMPREPLY=($(compgen -W '%1' -- \"$word\"))")
            .arg(names.join(QLatin1Char(' ')));
    if (option.help.value == QLatin1String("<filename>"))
        return QStringLiteral("compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\")");
    // A number or a text: there is nothing to propose.
    return QStringLiteral("COMPREPLY=()");
}

const char* const manualHead = R"(.TH SORVANE 1 "" "%1 %2" "User Commands"
.SH NAME
Sorvane \- pack sprites into a texture and write a data file for an engine
.SH SYNOPSIS
.B Sorvane
[\fIoption\fR ...] [\fIimage\fR | \fIfolder\fR | \fIproject\fR\fB.svs\fR ...]
.SH DESCRIPTION
Packs images, and all images of folders and the folders in them, into one texture, and writes a data file that tells an
engine where each of them lies. Project files are published one after the other; options override what they say, and
images are added to what they list. A run that would change nothing writes nothing.
.PP
Where two options set the same value, a fixed order decides, not the order on the command line.
)";

const char* const manualTail = R"(.SH EXIT STATUS
0 if all went well, 1 after an error, which is told on standard error. A faulty project doesn't keep the others from being
published.
.SH FILES
.TP
.I ~/.config/%1/%2.conf
preferences; \fBcustomExporterPath\fR names a folder with data formats of your own
.TP
.I ~/.cache/%1
notes by which the next run finds that nothing has changed; may be removed at any time
.SH EXAMPLES
.nf
Sorvane \-\-format json \-\-data sheet.json \-\-sheet sheet.png sprites/
Sorvane \-\-sheet ui@2x.png \-\-data ui@2x.plist \-\-auto\-sd ui/
Sorvane first.svs second.svs \-\-force\-publish
.fi
)";

} // namespace

QString manualPage() {
    QString text =
        QString::fromUtf8(manualHead).arg(QLatin1String(product::name), QLatin1String(product::version));
    for (const OptionSectionLayout& layout : optionSections()) {
        text += QStringLiteral(".%1 %2\n")
                    .arg(layout.isSubsection ? QStringLiteral("SS") : QStringLiteral("SH"),
                         QString::fromUtf8(layout.title).toUpper());
        for (const Option* option : optionsOf(layout.section))
            text += roffOption(*option);
    }
    text += QStringLiteral(".SH OLDER OPTIONS\nAccepted from older build scripts: %1.\n")
                .arg(roff(hiddenNames().join(QLatin1String(", "))));
    return text + QString::fromUtf8(manualTail)
                      .arg(QLatin1String(product::organisation), QLatin1String(product::name));
}

QString bashCompletion() {
    QStringList names;
    QString cases;
    for (const OptionSectionLayout& layout : optionSections()) {
        for (const Option* option : optionsOf(layout.section)) {
            names.append(option->name);
            const QString value = completionOfValue(*option);
            if (!value.isEmpty())
                cases += QStringLiteral("    %1) %2; return ;;\n").arg(option->name, value);
        }
    }
    return QStringLiteral("# Completion of %1's options, for bash.\n"
                          "_sorvane() {\n"
                          "    local word=${COMP_WORDS[COMP_CWORD]}\n"
                          "    case ${COMP_WORDS[COMP_CWORD - 1]} in\n"
                          "%2"
                          "    esac\n"
                          "    if [[ $word == --* ]]; then\n"
                          "        COMPREPLY=($(compgen -W '%3' -- \"$word\"))\n"
                          "    else\n"
                          "        compopt -o filenames\n"
                          "        mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
                          "    fi\n"
                          "}\n"
                          "complete -F _sorvane %1\n")
        .arg(QLatin1String(product::name), cases, names.join(QLatin1Char(' ')));
}

QString optionsPage() {
    QString text = QStringLiteral(
        "<!-- Made from the table of options by scripts/docs. -->\n"
        "# Options\n\n"
        "Words of an option are told as they are stored in a project. Where two options set the same "
        "value, a fixed order\ndecides and not the order on the command line: `--shape-padding` beats "
        "`--padding`, `--trim-mode` beats `--crop`, and\nevery option beats what the `--format` brings "
        "along. Only `--ignore-files`, `--replace` and `--autosd-variant` may be\ngiven several times.\n");
    for (const OptionSectionLayout& layout : optionSections()) {
        text += QStringLiteral("\n## %1\n\n| option | does |\n|---|---|\n").arg(QLatin1String(layout.title));
        for (const Option* option : optionsOf(layout.section))
            text += markdownOption(*option);
    }
    return text + QStringLiteral("\nAccepted from older build scripts: `%1`.\n")
                      .arg(hiddenNames().join(QLatin1String("`, `")));
}
