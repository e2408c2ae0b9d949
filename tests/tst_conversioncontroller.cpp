#include "conversion.h"
#include "conversioncontroller.h"
#include "conversionlogview.h"
#include "edit.h"
#include "mainwindow.h"
#include "panel.h"
#include "panelmanager.h"
#include "stopconversion.h"
#include "testsupport.h"
#include "ui_mainwindow.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QProcessEnvironment>
#include <QSignalSpy>
#include <QListView>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QLabel>
#include <QScrollBar>
#include <QtTest>
#include <Qsci/qsciscintilla.h>


// The conversion as the window drives it: Run, pause, resume and stop on a
// real child process, the terminate question, the log and its links.
class TestConversionController : public QObject
{
    Q_OBJECT
private:
    QString label() const { return m_window->form()->labelProcessState->text(); }
    QString log() const { return QString::fromUtf8(m_conversion->output()); }

    std::unique_ptr<TestDir> m_dir;
    std::unique_ptr<MainWindow> m_window;
    ConversionController *m_controller = nullptr;
    Conversion *m_conversion = nullptr;
    QStringList m_labels;
    int m_questions = 0;

    void setScript(ConversionController *controller, const QString &script)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TESTENGINE_SCRIPT"), QStringLiteral("inline:") + script);
        controller->conversion()->process()->setProcessEnvironment(environment);
    }

    // Starts a run of the test engine on @p controller (this window's by default).
    void startRun(const QString &script, const QStringList &files = {},
                  ConversionController *controller = nullptr)
    {
        controller = controller ? controller : m_controller;
        setScript(controller, script);
        const QStringList selection = files.isEmpty()
            ? QStringList{m_dir->createFile(QStringLiteral("in/a.sql"), "select 1;")}
            : files;
        const QString ini = m_dir->createFile(QStringLiteral("morvane.ini"), "[Morvane]\n");
        controller->runOrPause({{"/INI=", ini}}, QStringLiteral("System"), QStringLiteral("UTF-8"),
                               selection, m_dir->createDir(QStringLiteral("out")));
    }

private Q_SLOTS:
    void initTestCase()
    {
        useTestSettings();
    }

    void init()
    {
        m_dir = std::make_unique<TestDir>();
        m_window = std::make_unique<MainWindow>(nullptr, nullptr, QString());
        m_controller = m_window->conversionController();
        m_conversion = m_controller->conversion();
        m_conversion->setEngineProgram(QStringLiteral(TEST_ENGINE_PATH));
        m_questions = 0;
        m_controller->setTerminateQuestion([this] {
            ++m_questions;
            return false;
        });
        m_labels.clear();
        auto record = [this] {
            if (m_labels.isEmpty() || m_labels.last() != label())
                m_labels << label();
        };
        connect(m_conversion->process(), &QProcess::stateChanged, m_window.get(), record);
        connect(m_controller, &ConversionController::pauseMode, m_window.get(), record);
        connect(m_controller, &ConversionController::conversionMode, m_window.get(), record);
    }

    void cleanup()
    {
        m_controller->terminateNow();
        m_window.reset();
        m_dir.reset();
    }

    // Run pauses and resumes, Stop stops: this window's engine only, never a second run.
    void runPauseResumeStop()
    {
        QWidget otherWindow;
        auto *other = new ConversionController(&otherWindow);
        other->conversion()->setEngineProgram(QStringLiteral(TEST_ENGINE_PATH));
        startRun(QStringLiteral("ticks 3000 10 mine"));
        startRun(QStringLiteral("ticks 3000 10 other"), {}, other);
        QTRY_VERIFY(log().contains(QStringLiteral("mine 3")));
        QTRY_VERIFY(other->conversion()->output().contains("other 3"));
        const qint64 pid = m_conversion->process()->processId();

        startRun(QStringLiteral("ticks 2000 20 second"));
        QCOMPARE(label(), QStringLiteral("Pause"));
        QCOMPARE(m_conversion->process()->processId(), pid);
        QCOMPARE(m_window->runAction()->toolTip(), QStringLiteral("Resume"));
        QTest::qWait(100);
        const int mine = m_conversion->output().size();
        const int theirs = other->conversion()->output().size();
        QTRY_VERIFY(other->conversion()->output().size() > theirs + 100);
        QCOMPARE(m_conversion->output().size(), mine);
        other->StopConversion();
        QTRY_COMPARE(other->conversion()->state(), QProcess::NotRunning);
        QCOMPARE(m_conversion->state(), QProcess::Running);

        startRun(QString()); // resumes
        QCOMPARE(label(), QStringLiteral("Running"));
        QTRY_VERIFY(m_conversion->output().size() > mine);
        QVERIFY(!log().contains(QStringLiteral("second")));
        QElapsedTimer clock;
        clock.start();
        m_controller->StopConversion();
        QTRY_COMPARE_WITH_TIMEOUT(m_conversion->state(), QProcess::NotRunning, 3000);
        QVERIFY(clock.elapsed() < 3000);
        QCOMPARE(m_questions, 0);
        QCOMPARE(m_labels, (QStringList{QStringLiteral("Starting"), QStringLiteral("Running"),
                                        QStringLiteral("Pause"), QStringLiteral("Running"),
                                        QStringLiteral("Not Running")}));
        QVERIFY(log().contains(QStringLiteral("Stopped")));
        QVERIFY(log().contains(QStringLiteral("Conversion stopped on request: exit code 0")));
    }

    // The engine ignores Stop: the question comes once; Yes ends the engine and its children.
    void terminateQuestion_data()
    {
        QTest::addColumn<bool>("answer");
        QTest::newRow("No leaves it running") << false;
        QTest::newRow("Yes ends it") << true;
    }

    void terminateQuestion()
    {
        QFETCH(bool, answer);
        const int timeout = 300; // the engine ignores the stop event: no need to wait long
        m_conversion->stopper()->setStopTimeout(timeout);
        m_controller->setTerminateQuestion(nullptr);
        BoxAnswer box(answer ? QMessageBox::Yes : QMessageBox::No);
        const QString pidFile = m_dir->filePath(QStringLiteral("child.pid"));
        startRun(QStringLiteral("out Converting script (\"a.sql\") to PostgreSQL\\n\nchild %1\nsleep 30000")
                     .arg(pidFile));
        QTRY_COMPARE(label(), QStringLiteral("Running"));
        QTRY_VERIFY(QFileInfo(pidFile).size() > 0);
        // The engine's child: neither gone nor a zombie waiting for whoever adopted it.
        const QString stat = QStringLiteral("/proc/%1/stat").arg(QString(fileBytes(pidFile).trimmed()));
        const auto childAlive = [stat] {
            const QByteArray text = fileBytes(stat);
            return text != "<unreadable>" && text.mid(text.lastIndexOf(')') + 2, 1) != "Z";
        };
        QVERIFY(childAlive());
        m_controller->StopConversion();
        m_controller->StopConversion();
        QTRY_COMPARE_WITH_TIMEOUT(box.count, 1, 6000);
        QCOMPARE(box.text, QStringLiteral("The conversion engine has not stopped. Terminate it?"));
        if (answer) {
            QTRY_COMPARE(m_conversion->state(), QProcess::NotRunning);
            QVERIFY(log().contains(QStringLiteral("The conversion engine was terminated after")));
            QTRY_VERIFY(!childAlive()); // ended with the engine
            // The script it was on is not done.
            QCOMPARE(m_window->conversionLogView()->progressBar()->value(), 0);
            QCOMPARE(m_window->conversionLogView()->progressBar()->maximum(), 1);
        } else {
            // One question per timeout, however often Stop was pressed.
            QTest::qWait(2 * timeout + 100);
            QCOMPARE(box.count, 1);
            QCOMPARE(m_conversion->state(), QProcess::Running);
        }
    }

    void folderSelectionUsesMask()
    {
        const QString folder = m_dir->createDir(QStringLiteral("my scripts"));
        m_controller->setMaskQuestion([](QString *mask) {
            *mask = QStringLiteral("*.sql; *.ddl");
            return true;
        });
        QSignalSpy finished(m_controller, &ConversionController::runFinished);
        startRun(QString(), {folder});
        QVERIFY(finished.wait(10000));
        // Masks hold wildcards: they go through the list file, one per line.
        const QString listFile = m_conversion->request().listFile;
        QCOMPARE(m_conversion->lastArguments().first(), QStringLiteral("/FF=\"%1\"").arg(listFile));
        QCOMPARE(QString::fromUtf8(fileBytes(listFile)), QStringLiteral("%1/*.sql\n%1/*.ddl\n").arg(folder));

        // Cancelled: nothing runs.
        m_controller->setMaskQuestion([](QString *) { return false; });
        m_conversion->outputParser().clear();
        startRun(QString(), {folder});
        QCOMPARE(m_conversion->state(), QProcess::NotRunning);
        QVERIFY(m_conversion->output().isEmpty());
    }

    void logLinks()
    {
        const QString first = m_dir->createFile(QStringLiteral("in/first script.sql"), "a\nb\nc\n");
        const QString second = m_dir->createFile(QStringLiteral("in/second.sql"), "x\n");
        QSignalSpy finished(m_controller, &ConversionController::runFinished);
        startRun(QStringLiteral("out Converting script (\"%1\") to PostgreSQL\\n\n"
                                "sleep 150\nout \\n\\rCompleted 1\nsleep 150\nout \\n\\rCompleted 2\nsleep 150\n"
                                "out \\nline 3 - unexpected token 'oops'\\n\n"
                                "out Converting script (\"%2\") to PostgreSQL\\n\n")
                     .arg(first, second),
                 {first, second});
        QVERIFY(finished.wait(10000));
        QTRY_COMPARE(m_conversion->errors().size(), 1);
        m_window->conversionLogView()->flush();

        QPlainTextEdit *browser = m_window->form()->textEditLogView;
        const QString plain = browser->toPlainText();
        QVERIFY2(plain.contains(QStringLiteral("Completed 2")), qPrintable(plain));
        QVERIFY(!plain.contains(QStringLiteral("Completed 1")));
        const QString linkText = QStringLiteral("%1:3").arg(first);
        QVERIFY2(plain.contains(linkText + QStringLiteral(" Unexpected token 'oops'")), qPrintable(plain));

        m_window->show();
        m_window->form()->tabWidget->setVisible(true);
        m_window->form()->tabWidget->setCurrentIndex(1);
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QTextCursor cursor = browser->document()->find(linkText);
        QVERIFY(!cursor.isNull());
        cursor.setPosition(cursor.selectionStart() + 2);
        browser->setTextCursor(cursor);
        browser->ensureCursorVisible();
        const QPoint at = browser->cursorRect(cursor).center();
        QSignalSpy open(m_window->conversionLogView(), &ConversionLogView::openFileAtLine);
        QTest::mouseClick(browser->viewport(), Qt::LeftButton, {}, at);
        QTRY_COMPARE(open.count(), 1);
        QCOMPARE(open.at(0).at(0).toString(), first);
        QCOMPARE(open.at(0).at(1).toInt(), 3);

        // Beside the log: counters, progress, the error list and its keys.
        ConversionLogView *view = m_window->conversionLogView();
        QCOMPARE(view->counters()->text(), QStringLiteral("1 error(s) in 1 script(s)"));
        QCOMPARE(view->progressBar()->value(), 2);
        QCOMPARE(view->progressBar()->maximum(), 2);
        QTest::keyClick(m_window.get(), Qt::Key_F9);
        QCOMPARE(view->errorList()->currentIndex().row(), 0);
        QCOMPARE(browser->textCursor().selectedText(), linkText + QStringLiteral(" Unexpected token 'oops'"));
        QTest::keyClick(view->errorList(), Qt::Key_Return);
        QTRY_COMPARE(open.count(), 2);
        QCOMPARE(open.at(1).at(0).toString(), first);

        // Find wraps round; Save writes the whole output.
        QVERIFY(view->find(QStringLiteral("Completed")));
        QCOMPARE(browser->textCursor().selectedText(), QStringLiteral("Completed"));
        QVERIFY(!view->find(QStringLiteral("no such text")));
        const QString saved = m_dir->filePath(QStringLiteral("run.log"));
        QString error;
        QVERIFY2(view->saveTo(saved, &error), qPrintable(error));
        QCOMPARE(fileBytes(saved), m_conversion->output());
    }

    void logFollowsEndOnlyAtBottom()
    {
        m_window->show();
        m_window->ShowConversionLog();
        QPlainTextEdit *log = m_window->form()->textEditLogView;
        startRun(QStringLiteral("ticks 100000 2 tick"));
        QScrollBar *bar = log->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 50);
        QTRY_COMPARE(bar->value(), bar->maximum());
        // Scrolled up to read: the view stays where the reader is.
        bar->setValue(10);
        const int maximum = bar->maximum();
        QTRY_VERIFY(bar->maximum() > maximum + 20);
        QCOMPARE(bar->value(), 10);
        // Back at the bottom: it follows again.
        bar->setValue(bar->maximum());
        const int again = bar->maximum();
        QTRY_VERIFY(bar->maximum() > again + 20);
        QTRY_COMPARE(bar->value(), bar->maximum());
    }

    // However a run ends, before the start or after, the log is shown and says why.
    void runEnds_data()
    {
        QTest::addColumn<QString>("failure"); // what is wrong before the start; empty: nothing
        QTest::addColumn<QString>("script");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("non-zero exit")
            << "" << "out Converting script (\"/a.sql\") to X\\nline 4 - unexpected token 'x'\\n\nexit 3"
            << QStringList{"Converting script", "Conversion finished: exit code 3, duration",
                           "1 script(s) with errors"};
        QTest::newRow("crash") << "" << "out working\\n\ncrash" << QStringList{"working\n", "crashed"};
        QTest::newRow("invalid UTF-8 and bare carriage returns")
            << "" << "out Converting script (\"/\\xff.sql\") to X\\nline 2 - unexpected token 'a\\rb'\\n\\rxy\\r\\n"
               "\nout Converting script (\"/n.sql\") to X\\n"
            << QStringList{"Converting script (\"/\xef\xbf\xbd.sql\")", "exit code 0"};
        QTest::newRow("nothing selected") << "selection" << "" << QStringList{"Incorrect source file or destination path"};
        QTest::newRow("engine missing") << "engine" << "" << QStringList{"no-engine' does not exist; nothing was converted"};
        QTest::newRow("engine not on PATH") << "bare engine" << "" << QStringList{"was not found beside the application"};
        QTest::newRow("output folder missing") << "output" << "" << QStringList{"does not exist; nothing was converted"};
        QTest::newRow("INI of the options missing") << "ini" << "" << QStringList{"given in the migration options does not exist"};
    }

    void runEnds()
    {
        QFETCH(QString, failure);
        QFETCH(QString, script);
        QFETCH(QStringList, expected);
        m_window->show();
        QTabWidget *tabs = m_window->form()->tabWidget;
        tabs->setVisible(false);
        // No settings file for the engine: a run that starts says so, one that fails does not.
        QMap<QString, QString> options;
        QStringList files{m_dir->createFile(QStringLiteral("in/a.sql"), "select 1;")};
        QString output = m_dir->createDir(QStringLiteral("out"));
        if (failure == QLatin1String("selection"))
            files.clear();
        else if (failure == QLatin1String("engine"))
            m_conversion->setEngineProgram(m_dir->filePath(QStringLiteral("no-engine")));
        else if (failure == QLatin1String("bare engine"))
            m_conversion->setEngineProgram(QStringLiteral("morvane-engine-that-is-nowhere"));
        else if (failure == QLatin1String("output"))
            output = m_dir->filePath(QStringLiteral("gone"));
        else if (failure == QLatin1String("ini"))
            options.insert(QStringLiteral("/INI="), m_dir->filePath(QStringLiteral("none.ini")));
        setScript(m_controller, script);
        QSignalSpy finished(m_controller, &ConversionController::runFinished);
        m_controller->runOrPause(options, QStringLiteral("System"), QStringLiteral("UTF-8"), files,
                                 output);
        // A failure before the start ends the run before Run returns.
        QVERIFY(failure.isEmpty() ? finished.wait(10000) : finished.count() == 1);
        QCOMPARE(label(), QStringLiteral("Not Running"));
        QVERIFY(failure.isEmpty() || m_conversion->stopEventName().isEmpty());
        QVERIFY(tabs->isVisible());
        QCOMPARE(tabs->currentIndex(), 1);
        m_window->conversionLogView()->flush();
        const QString shown = m_window->form()->textEditLogView->toPlainText();
        for (const QString &text : expected)
            QVERIFY2(shown.contains(text), qPrintable(shown));
        QCOMPARE(shown.contains(QStringLiteral("own defaults")), failure.isEmpty());
    }

    void pauseAsksNoSaveQuestion()
    {
        const QString script = m_dir->createFile(QStringLiteral("in/edited.sql"), "select 1;\n");
        Panel *left = m_window->panelManager()->leftPanel();
        left->openEditFile(script);
        QVERIFY(left->editor());
        startRun(QStringLiteral("ticks 3000 10 tick"));
        QTRY_COMPARE(label(), QStringLiteral("Running"));
        QTest::keyClicks(left->editor()->editorWidget(), "-- edited");
        QVERIFY(left->editor()->isModified());
        BoxAnswer box(QMessageBox::Cancel);
        m_window->startConversionEx();
        QCOMPARE(label(), QStringLiteral("Pause"));
        m_window->startConversionEx();
        QCOMPARE(label(), QStringLiteral("Running"));
        QTest::qWait(50);
        QCOMPARE(box.count, 0);
        QVERIFY(left->editor()->isModified());
    }

    void closeDuringRunAsks()
    {
        m_window->show();
        startRun(QStringLiteral("ticks 3000 10 tick"));
        QTRY_COMPARE(label(), QStringLiteral("Running"));
        QString question;
        const auto answer = [&question](const QString &button) {
            onModal([&question, button](QWidget *widget) {
                auto *box = qobject_cast<QMessageBox *>(widget);
                question = box->text();
                for (QAbstractButton *each : box->buttons()) {
                    if (each->text() == button)
                        each->click();
                }
            });
        };
        answer(QStringLiteral("Keep the Window"));
        QVERIFY(!m_window->close());
        QCOMPARE(question, QStringLiteral("Still running: the conversion. Stop and close the window?"));
        QCOMPARE(m_conversion->state(), QProcess::Running);

        answer(QStringLiteral("Stop and Close"));
        QVERIFY(m_window->close());
        QCOMPARE(m_conversion->state(), QProcess::NotRunning);
    }
};

QTEST_MAIN(TestConversionController)
#include "tst_conversioncontroller.moc"
