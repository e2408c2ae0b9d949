#include "settings.h"

#include <QDir>

#include <algorithm>

namespace {

// The keys are what users have on disk: keep every text as it is, typos and
// the leading slashes (which the store drops) included.
const QString MainWindow = QStringLiteral("Main Window/");
const QString WindowSize = MainWindow + QStringLiteral("size");
const QString WindowPosition = MainWindow + QStringLiteral("pos");
const QString WindowGeometry = MainWindow + QStringLiteral("geometry");
const QString Commands = MainWindow + QStringLiteral("Commands");
const QString FontSize = MainWindow + QStringLiteral("FontSize");
const QString RecentFolders = MainWindow + QStringLiteral("RecentOpenFolder/");
const QString Filters = MainWindow + QStringLiteral("Filters");
const QString Masks = MainWindow + QStringLiteral("Conversion/Masks");
const QString FindGroup = MainWindow + QStringLiteral("FindDialog/");
const QString FindFiles = FindGroup + QStringLiteral("FindFiles");
const QString SearchIn = FindGroup + QStringLiteral("SearchIn");
const QString FindText = FindGroup + QStringLiteral("FindText");
const QString MatchCase = FindGroup + QStringLiteral("IsCaseValuse");
const QString WholeWords = FindGroup + QStringLiteral("IsWholeWords");
const QString PatternSyntax = FindGroup + QStringLiteral("PatternSynx");
const QString IgnoreWhitespace = QStringLiteral("Diff/IgnoreWhitespace");
const QString IgnoreCase = QStringLiteral("Diff/IgnoreCase");

// The engine switches kept in the "Main Window" group, in the order they are read.
const QStringList EngineOptionKeys{
    QStringLiteral("/D"),     QStringLiteral("/U"),    QStringLiteral("/P"),
    QStringLiteral("SD"),     QStringLiteral("FD"),    QStringLiteral("SDC"),
    QStringLiteral("/PRJF="), QStringLiteral("/INI="), QStringLiteral("/TBLDDL="),
    QStringLiteral(" ")};
const QString PasswordKey = QStringLiteral("/P");

// Keys of one side. The panels' keys name the screen side: the source is on the left.
QString encodingKey(Settings::Side side)
{
    return side == Settings::Source ? QStringLiteral("/SRCENC=") : QStringLiteral("/TRGENC=");
}

QString platformKey(Settings::Side side)
{
    return MainWindow + (side == Settings::Source ? QStringLiteral("source")
                                                  : QStringLiteral("target"));
}

QString diskKey(Settings::Side side)
{
    return MainWindow + (side == Settings::Source ? QStringLiteral("leftDisk")
                                                  : QStringLiteral("rightDisk"));
}

QString panelGroup(Settings::Side side)
{
    return MainWindow + (side == Settings::Source ? QStringLiteral("leftPanel/")
                                                  : QStringLiteral("rightPanel/"));
}

QString databaseKey(Settings::Side side)
{
    return side == Settings::Source ? QStringLiteral("ConversionOptionsDialog/SourceDatabase")
                                    : QStringLiteral("ConversionOptionsDialog/TargetDatabase");
}

// The keys inside a panel's group, and the interface's key beside a side's database.
const QString PanelPath = QStringLiteral("Path");
const QString PanelMask = QStringLiteral("Mask");
const QString PanelShowHidden = QStringLiteral("ShowHidden");
const QString ApiSuffix = QStringLiteral("API");

const QString AnyFile = QStringLiteral("*.*");

} // namespace

Settings::Settings()
    : QSettings(organisation(), application())
{
}

QString Settings::organisation()
{
    const QString name = QStringLiteral("Quillon Systems Ltd.\\Morvane 6.0\\Qt Tools");
#ifdef Q_OS_WIN
    return name;
#else
    QString nested = name;
    return nested.replace(QLatin1Char('\\'), QLatin1Char('/'));
#endif
}

QString Settings::application()
{
    return QStringLiteral("Morvane Navarch");
}

QSize Settings::windowSize() const
{
    return value(WindowSize, QSize(-1, -1)).toSize();
}

QPoint Settings::windowPosition() const
{
    return value(WindowPosition, QPoint(200, 200)).toPoint();
}

void Settings::setWindowPlacement(const QSize &size, const QPoint &position)
{
    setValue(WindowSize, size);
    setValue(WindowPosition, position);
}

QByteArray Settings::windowGeometry() const
{
    return value(WindowGeometry).toByteArray();
}

void Settings::setWindowGeometry(const QByteArray &geometry)
{
    setValue(WindowGeometry, geometry);
}

QByteArray Settings::splitterState(const QString &splitterName) const
{
    return value(MainWindow + splitterName).toByteArray();
}

void Settings::setSplitterState(const QString &splitterName, const QByteArray &state)
{
    setValue(MainWindow + splitterName, state);
}

QStringList Settings::commands() const
{
    return value(Commands)
        .toString()
        .split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

void Settings::setCommands(const QStringList &commands)
{
    QString stored;
    for (const QString &command : commands)
        stored += QLatin1Char(';') + command;
    setValue(Commands, stored);
}

QMap<QString, QString> Settings::engineOptions() const
{
    QMap<QString, QString> options;
    for (const QString &key : EngineOptionKeys) {
        if (contains(MainWindow + key))
            options.insert(key, value(MainWindow + key).toString());
    }
    return options;
}

void Settings::setEngineOptions(const QMap<QString, QString> &options)
{
    // Every key is written: an option the user cleared must not come back.
    for (const QString &key : EngineOptionKeys) {
        const QString option = options.value(key);
        if (key == PasswordKey || option.isEmpty())
            remove(MainWindow + key);
        else
            setValue(MainWindow + key, option);
    }
}

QString Settings::encodingOption(Side side) const
{
    return value(encodingKey(side), QStringLiteral("System")).toString();
}

void Settings::setEncodingOption(Side side, const QString &encoding)
{
    setValue(encodingKey(side), encoding);
}

int Settings::fontSize() const
{
    return value(FontSize, 12).toInt();
}

void Settings::setFontSize(int size)
{
    setValue(FontSize, size);
}

QStringList Settings::recentFolders() const
{
    // The keys are list positions, directly in the group.
    QStringList positions;
    for (const QString &key : allKeys()) {
        const QString position = key.mid(RecentFolders.size());
        if (key.startsWith(RecentFolders) && !position.contains(QLatin1Char('/')))
            positions << position;
    }
    // "2" comes before "10".
    std::stable_sort(positions.begin(), positions.end(), [](const QString &a, const QString &b) {
        bool aNumber = false;
        bool bNumber = false;
        const int aValue = a.toInt(&aNumber);
        const int bValue = b.toInt(&bNumber);
        if (aNumber != bNumber)
            return aNumber;
        return aNumber ? aValue < bValue : a < b;
    });
    QStringList folders;
    for (const QString &position : qAsConst(positions))
        folders << value(RecentFolders + position).toString();
    return folders;
}

void Settings::setRecentFolders(const QStringList &folders)
{
    remove(RecentFolders); // drops keys beyond the current list
    for (int i = 0; i < folders.size(); ++i)
        setValue(RecentFolders + QString::number(i), folders.at(i));
}

QString Settings::platform(Side side) const
{
    return value(platformKey(side), side == Source ? QStringLiteral("Microsoft SQL Server")
                                                   : QStringLiteral("Oracle"))
        .toString();
}

void Settings::setPlatform(Side side, const QString &name)
{
    setValue(platformKey(side), name);
}

QString Settings::disk(Side side) const
{
    return value(diskKey(side), QDir::toNativeSeparators(QDir::rootPath())).toString();
}

void Settings::setDisk(Side side, const QString &disk)
{
    setValue(diskKey(side), disk);
}

Settings::PanelState Settings::panel(Side side) const
{
    const QString group = panelGroup(side);
    PanelState state;
    state.path = value(group + PanelPath).toString();
    state.mask = value(group + PanelMask, state.mask).toString();
    state.showHidden = value(group + PanelShowHidden, state.showHidden).toBool();
    return state;
}

void Settings::setPanel(Side side, const PanelState &state)
{
    const QString group = panelGroup(side);
    setValue(group + PanelPath, state.path);
    setValue(group + PanelMask, state.mask);
    setValue(group + PanelShowHidden, state.showHidden);
}

QString Settings::filters() const
{
    return value(Filters, AnyFile).toString();
}

void Settings::setFilters(const QString &history)
{
    setValue(Filters, history);
}

QString Settings::masks() const
{
    return value(Masks, AnyFile).toString();
}

void Settings::setMasks(const QString &history)
{
    setValue(Masks, history);
}

Settings::DatabaseChoice Settings::databaseChoice(Side side) const
{
    return {value(databaseKey(side)).toString(), value(databaseKey(side) + ApiSuffix).toString()};
}

void Settings::setDatabaseChoice(Side side, const DatabaseChoice &choice)
{
    setValue(databaseKey(side), choice.database);
    setValue(databaseKey(side) + ApiSuffix, choice.api);
}

Settings::FindOptions Settings::findOptions(const QString &folder) const
{
    FindOptions options;
    options.files = value(FindFiles,
                          QStringLiteral("*.*;PowerBuilder Source Files (*.srd, *.srw, *.sru, "
                                         "*.srf, *.srs, *.srq, *.sra, *.srm)"))
                        .toString();
    options.folder = value(SearchIn, folder).toString();
    options.text = value(FindText).toString();
    options.matchCase = value(MatchCase, false).toBool();
    options.wholeWords = value(WholeWords, false).toBool();
    options.patternSyntax = value(PatternSyntax, 0).toInt();
    return options;
}

void Settings::setFindOptions(const FindOptions &options)
{
    setValue(FindFiles, options.files);
    setValue(SearchIn, options.folder);
    setValue(FindText, options.text);
    setValue(MatchCase, options.matchCase);
    setValue(WholeWords, options.wholeWords);
    setValue(PatternSyntax, options.patternSyntax);
}

bool Settings::diffIgnoresWhitespace() const
{
    return value(IgnoreWhitespace, true).toBool();
}

void Settings::setDiffIgnoresWhitespace(bool ignore)
{
    setValue(IgnoreWhitespace, ignore);
}

bool Settings::diffIgnoresCase() const
{
    return value(IgnoreCase, false).toBool();
}

void Settings::setDiffIgnoresCase(bool ignore)
{
    setValue(IgnoreCase, ignore);
}
