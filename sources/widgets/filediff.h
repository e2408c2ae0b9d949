#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class FileComparator;
class Panel;
class QAction;
class QMainWindow;
class QToolBar;

/**
 * Side-by-side comparison of the files selected in the two panels: opens both in
 * their editors, marks the differing lines and steps through them from a tool bar.
 */
class FileDiff : public QObject
{
    Q_OBJECT
public:
    FileDiff(QAction *compareAction, QMainWindow *mainWindow, Panel *leftPanel,
             Panel *rightPanel);
    ~FileDiff() override;

    /** Compares two given files, as showDiffFiles() does with the selections. */
    void compareFiles(const QString &leftFile, const QString &rightFile);

    QToolBar *toolBar() const { return m_toolBar; }
    QAction *nextAction() const { return m_nextAction; }
    QAction *prevAction() const { return m_prevAction; }
    QAction *closeAction() const { return m_closeAction; }
    QAction *diffOnlyAction() const { return m_diffOnlyAction; }
    const FileComparator *comparator() const { return m_comparator.get(); }
    int leftPosition() const { return m_leftPosition; }
    int rightPosition() const { return m_rightPosition; }

public Q_SLOTS:
    void showDiffFiles();
    bool close();
    void showNextDiff();
    void showPrevDiff();
    void showDiffOnly();

private:
    void startComparison(const QString &leftFile, const QString &rightFile);
    void markDifferences(Panel *panel, int part);
    void stepSide(Panel *panel, int part, int position);
    void reduceToDifferences(Panel *panel, QString &savedText);

    QMainWindow *m_mainWindow;
    QToolBar *m_toolBar = nullptr;
    QPointer<QAction> m_compareAction;
    QAction *m_nextAction = nullptr;
    QAction *m_prevAction = nullptr;
    QAction *m_closeAction = nullptr;
    QAction *m_diffOnlyAction = nullptr;
    QPointer<Panel> m_leftPanel;
    QPointer<Panel> m_rightPanel;
    QString m_leftSavedText;
    QString m_rightSavedText;
    std::unique_ptr<FileComparator> m_comparator;
    int m_leftPosition = -1;
    int m_rightPosition = -1;
    QList<QMetaObject::Connection> m_closeConnections;
};
