#pragma once

#include <QDialog>
#include <QStringList>

class QComboBox;

/** Chooses the encoding of the source scripts and the one the engine writes. */
class EncodingOptionsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit EncodingOptionsDialog(QWidget *parent = nullptr);

    /** Selects the item with exactly this text; an unknown name selects nothing. */
    void setSourceEncoding(const QString &name);
    void setTargetEncoding(const QString &name);
    QString sourceEncoding() const { return m_sourceEncoding; }
    QString targetEncoding() const { return m_targetEncoding; }

    const QStringList &encodings() const { return m_encodings; }
    QComboBox *sourceCombo() const { return m_sourceCombo; }
    QComboBox *targetCombo() const { return m_targetCombo; }

    /** The codec names and aliases, without "SJIS", sorted. */
    static QStringList encodingList();

public Q_SLOTS:
    void setSourceEncodingIndex(int index);
    void setTargetEncodingIndex(int index);

private:
    QString m_sourceEncoding;
    QString m_targetEncoding;
    QStringList m_encodings;
    QComboBox *m_sourceCombo;
    QComboBox *m_targetCombo;
};
