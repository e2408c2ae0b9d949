#include "settings.h"

#include <QDir>

#include <algorithm>

namespace {

// The keys are what users have on disk: keep every text as it is, typos and
// the leading slashes (which the store drops) included.
const QString MainWindow = QStringLiteral("Main Window/");
const QString FindDialog = MainWindow + QStringLiteral("FindDialog/");
const QString RecentFolders = MainWindow + QStringLiteral("RecentOpenFolder/");
const QString DatabaseChoices = QStringLiteral("ConversionOptionsDialog/");
const QString Diff = QStringLiteral("Diff/");

// The engine switches kept in the store, in the order they are read.
const QStringList EngineOptionKeys{
    QStringLiteral("/D"),     QStringLiteral("/U"),    QStringLiteral("/P"),
    QStringLiteral("SD"),     QStringLiteral("FD"),    QStringLiteral("SDC"),
    QStringLiteral("/PRJF="), QStringLiteral("/INI="), QStringLiteral("/TBLDDL="),
    QStringLiteral(" ")};
const QString PasswordKey = QStringLiteral("/P");

const QString DefaultEncoding = QStringLiteral("System");
const QString AnyFile = QStringLiteral("*.*");

QString sideName(Settings::Side side)
{
    return side == Settings::Source ? QStringLiteral("Source") : QStringLiteral("Target");
}

// The panel keys name the screen side: the source is on the left.
QString screenSide(Settings::Side side)
{
    return side == Settings::Source ? QStringLiteral("left") : QStringLiteral("right");
}

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
    return value(MainWindow + QStringLiteral("size"), QSize(-1, -1)).toSize();
}

QPoint Settings::windowPosition() const
{
    return value(MainWindow + QStringLiteral("pos"), QPoint(200, 200)).toPoint();
}

void Settings::setWindowPlacement(const QSize &size, const QPoint &position)
{
    setValue(MainWindow + QStringLiteral("size"), size);
    setValue(MainWindow + QStringLiteral("pos"), position);
}

QByteArray Settings::windowGeometry() const
{
    return value(MainWindow + QStringLiteral("geometry")).toByteArray();
}

void Settings::setWindowGeometry(const QByteArray &geometry)
{
    setValue(MainWindow + QStringLiteral("geometry"), geometry);
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
    return value(MainWindow + QStringLiteral("Commands"))
        .toString()
        .split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

void Settings::setCommands(const QStringList &commands)
{
    QString stored;
    for (const QString &command : commands)
        stored += QLatin1Char(';') + command;
    setValue(MainWindow + QStringLiteral("Commands"), stored);
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
    return value(side == Source ? QStringLiteral("/SRCENC=") : QStringLiteral("/TRGENC="),
                 DefaultEncoding)
        .toString();
}

void Settings::setEncodingOption(Side side, const QString &encoding)
{
    setValue(side == Source ? QStringLiteral("/SRCENC=") : QStringLiteral("/TRGENC="), encoding);
}

int Settings::fontSize() const
{
    return value(MainWindow + QStringLiteral("FontSize"), 12).toInt();
}

void Settings::setFontSize(int size)
{
    setValue(MainWindow + QStringLiteral("FontSize"), size);
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
    if (side == Source)
        return value(MainWindow + QStringLiteral("source"), QStringLiteral("Microsoft SQL Server"))
            .toString();
    return value(MainWindow + QStringLiteral("target"), QStringLiteral("Oracle")).toString();
}

void Settings::setPlatform(Side side, const QString &name)
{
    setValue(MainWindow + (side == Source ? QStringLiteral("source") : QStringLiteral("target")),
             name);
}

QString Settings::disk(Side side) const
{
    return value(MainWindow + screenSide(side) + QStringLiteral("Disk"),
                 QDir::toNativeSeparators(QDir::rootPath()))
        .toString();
}

void Settings::setDisk(Side side, const QString &disk)
{
    setValue(MainWindow + screenSide(side) + QStringLiteral("Disk"), disk);
}

Settings::PanelState Settings::panel(Side side) const
{
    const QString group = MainWindow + screenSide(side) + QStringLiteral("Panel/");
    PanelState state;
    state.path = value(group + QStringLiteral("Path")).toString();
    state.mask = value(group + QStringLiteral("Mask"), state.mask).toString();
    state.showHidden = value(group + QStringLiteral("ShowHidden"), state.showHidden).toBool();
    return state;
}

void Settings::setPanel(Side side, const PanelState &state)
{
    const QString group = MainWindow + screenSide(side) + QStringLiteral("Panel/");
    setValue(group + QStringLiteral("Path"), state.path);
    setValue(group + QStringLiteral("Mask"), state.mask);
    setValue(group + QStringLiteral("ShowHidden"), state.showHidden);
}

QString Settings::filters() const
{
    return value(MainWindow + QStringLiteral("Filters"), AnyFile).toString();
}

void Settings::setFilters(const QString &history)
{
    setValue(MainWindow + QStringLiteral("Filters"), history);
}

QString Settings::masks() const
{
    return value(MainWindow + QStringLiteral("Conversion/Masks"), AnyFile).toString();
}

void Settings::setMasks(const QString &history)
{
    setValue(MainWindow + QStringLiteral("Conversion/Masks"), history);
}

Settings::DatabaseChoice Settings::databaseChoice(Side side) const
{
    const QString key = DatabaseChoices + sideName(side) + QStringLiteral("Database");
    return {value(key).toString(), value(key + QStringLiteral("API")).toString()};
}

void Settings::setDatabaseChoice(Side side, const DatabaseChoice &choice)
{
    const QString key = DatabaseChoices + sideName(side) + QStringLiteral("Database");
    setValue(key, choice.database);
    setValue(key + QStringLiteral("API"), choice.api);
}

Settings::FindOptions Settings::findOptions(const QString &folder) const
{
    FindOptions options;
    options.files = value(FindDialog + QStringLiteral("FindFiles"),
                          QStringLiteral("*.*;PowerBuilder Source Files (*.srd, *.srw, *.sru, "
                                         "*.srf, *.srs, *.srq, *.sra, *.srm)"))
                        .toString();
    options.folder = value(FindDialog + QStringLiteral("SearchIn"), folder).toString();
    options.text = value(FindDialog + QStringLiteral("FindText")).toString();
    options.matchCase = value(FindDialog + QStringLiteral("IsCaseValuse"), false).toBool();
    options.wholeWords = value(FindDialog + QStringLiteral("IsWholeWords"), false).toBool();
    options.patternSyntax = value(FindDialog + QStringLiteral("PatternSynx"), 0).toInt();
    return options;
}

void Settings::setFindOptions(const FindOptions &options)
{
    setValue(FindDialog + QStringLiteral("FindFiles"), options.files);
    setValue(FindDialog + QStringLiteral("SearchIn"), options.folder);
    setValue(FindDialog + QStringLiteral("FindText"), options.text);
    setValue(FindDialog + QStringLiteral("IsCaseValuse"), options.matchCase);
    setValue(FindDialog + QStringLiteral("IsWholeWords"), options.wholeWords);
    setValue(FindDialog + QStringLiteral("PatternSynx"), options.patternSyntax);
}

bool Settings::diffIgnoresWhitespace() const
{
    return value(Diff + QStringLiteral("IgnoreWhitespace"), true).toBool();
}

void Settings::setDiffIgnoresWhitespace(bool ignore)
{
    setValue(Diff + QStringLiteral("IgnoreWhitespace"), ignore);
}

bool Settings::diffIgnoresCase() const
{
    return value(Diff + QStringLiteral("IgnoreCase"), false).toBool();
}

void Settings::setDiffIgnoresCase(bool ignore)
{
    setValue(Diff + QStringLiteral("IgnoreCase"), ignore);
}
