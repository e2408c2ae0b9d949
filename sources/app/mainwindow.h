#pragma once

#include <QMainWindow>
#include <QSet>
#include <QMap>
#include <QProcess>
#include <memory>

class CommandLine;
class ConversionController;
class FileDiff;
class FontActions;
class FileListDiff;
class FindScript;
class ConversionLogView;
class PanelManager;
class QApplication;
class QMenu;
class QPlainTextEdit;
class StartupOptions;
namespace Ui {
class MainWindow;
}

/**
 * The application's window: two panels, the search-results and log tabs below
 * them, the command bar, menus and tool bar.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    MainWindow(QWidget *parent, QApplication *application, const QString &unused);
    ~MainWindow() override;

    Ui::MainWindow *form() const { return m_ui.get(); }
    PanelManager *panelManager() const { return m_panelManager; }
    ConversionController *conversionController() const { return m_controller; }
    FindScript *findScript() const { return m_findScript; }
    ConversionLogView *conversionLogView() const { return m_logView; }

    /** Engine switches ("/PRJF=", "/INI=", ...) and the free extra options under " ". */
    QMap<QString, QString> &engineOptions() { return m_engineOptions; }
    QString sourceEncoding() const { return m_sourceEncoding; }
    QString targetEncoding() const { return m_targetEncoding; }

    QAction *runAction() const { return m_runAction; }
    QAction *findAction() const { return m_findAction; }
    QAction *cancelAction() const { return m_cancelAction; }
    /** Where the commands typed on the "Commands:" line write. */
    QPlainTextEdit *commandOutput() const { return m_commandOutput; }

    /**
     * Opens the panels on the folders and files given on the command line and
     * shows why any path was not opened, without blocking.
     */
    void openStartupPaths(const StartupOptions &options);

Q_SIGNALS:
    /** Asks for the search-results tab. */
    void showFindLogRequested();

public Q_SLOTS:
    void turnWaitingMode(Qt::CursorShape cursor);
    void stopThread();
    void pauseMode(bool isRunnig);
    void conversionMode();
    void startConversionEx();
    void changeConversionIndexes(int sourceIndex, int targetIndex);
    void ShowFilterDialog();
    void showFindLog();
    void ShowConversionLog();
    void showConnectionOptions();
    void migrationOptions();
    void showEncodingOptions();
    void showAbout();
    void printStandartOutput();
    void viewLog();
    void makeDir();
    void deleteObject();
    void changeProcessState(QProcess::ProcessState processState);
    void copyFiles();
    void changeRoot(const QString &folder);
    void initSubMenu(QAction *action);
    void focusChanged(QWidget *old, QWidget *now);
    void copyFile();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /** The long works that show a busy cursor; all but the listing can be cancelled. */
    enum class Work { Find, Copy, Compare, Other, Listing };
    void setWorkBusy(Work work, bool busy);

    void createActions();
    void setupConversion();
    void setupEditorAndComparison();
    /** Offers to save each panel's modified document; false when the user cancels. */
    bool confirmDocumentsSaved();
    /** Asks before closing while a conversion, search or copy runs; false keeps the window. */
    bool confirmCloseWhileBusy();
    void setupSearch();
    void setupCommandLine();
    void runCommandLine();
    void readSettings();
    void writeSettings();
    void openLogLink(const QString &path, int line);

    std::unique_ptr<Ui::MainWindow> m_ui;
    PanelManager *m_panelManager = nullptr;
    ConversionController *m_controller = nullptr;
    CommandLine *m_commandLine = nullptr;
    FileDiff *m_fileDiff = nullptr;
    FontActions *m_fontActions = nullptr;
    ConversionLogView *m_logView = nullptr;
    QMap<QString, QString> m_engineOptions;
    QString m_sourceEncoding;
    QString m_targetEncoding;

    QAction *m_runAction = nullptr;
    QAction *m_stopAction = nullptr;
    QAction *m_migrationAction = nullptr;
    QAction *m_encodingAction = nullptr;
    QAction *m_findAction = nullptr;
    QAction *m_copyFileAction = nullptr;
    QSet<int> m_busyWorks;
    bool m_listing = false;
    QAction *m_cancelAction = nullptr;
    QAction *m_exitAction = nullptr;
    QPlainTextEdit *m_commandOutput = nullptr;
    QMenu *m_recentMenu = nullptr;
    FindScript *m_findScript = nullptr;
    FileListDiff *m_fileListDiff = nullptr;
};
