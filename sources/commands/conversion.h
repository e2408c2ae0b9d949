#pragma once

#include "command.h"

#include <QMap>
#include <QProcess>
#include <QStringList>

/** Runs the conversion engine on a set of scripts and gathers what it prints. */
class Conversion : public QProcess, public Command
{
    Q_OBJECT
public:
    explicit Conversion(QObject *parent);

    void execute() override;

    /** Adds one direction table's rows to the name map and the direction list. */
    void parseDirectionInfo(QByteArray &path);

    const QMap<QString, QString> &nameMap() const { return m_nameMap; }
    const QStringList &directionList() const { return m_directionList; }
    const QMap<QString, QString> &parameters() const { return m_parameters; }
    QString program() const { return m_program; }

Q_SIGNALS:
    void showTerminateDialog();
    void standardOutputChanged();
    void errorsChanged();

public Q_SLOTS:
    void setSourceConversion(QString sourceConversion);
    void setTargetConversion(QString targetConversion);
    void setSourceConversionOption(QString database, QString api);
    void setTargetConversionOption(QString database, QString api);
    void setFile(QStringList absolutePathFile);
    void setOutputDir(QString outputDir);

private:
    QMap<QString, QString> m_nameMap;
    QMap<QString, QString> m_parameters;
    QStringList m_directionList;
    QString m_program;
    QString m_fileList;
    QString m_outputDir;
};
