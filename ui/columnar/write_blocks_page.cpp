#include "ui/columnar/write_blocks_page.h"

#include <limits>

#include <QGroupBox>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include "ui/columnar/block_memory.h"
#include "ui/columnar/summary_texts.h"

namespace kelvarin {

namespace {

constexpr int kMaxThreads = 1024;

}  // namespace

WriteBlocksPage::WriteBlocksPage(QWidget* parent) : SettingsPage(parent) {
  QGroupBox* blocks = group(tr("Blocks"));
  m_rowsInBlock =
      spinBox("sbRowsInBlock", 1, std::numeric_limits<int>::max(), tr("Rows in a block"));
  auto* rowsLabel = new QLabel(tr("&Rows in a block:"), blocks);
  rowsLabel->setBuddy(m_rowsInBlock);
  m_rowsInBlock->setToolTip(
      tr("Large blocks compress better; small ones let a reader skip more of the file."));
  m_memory = new QLabel(blocks);
  m_memory->setObjectName(QStringLiteral("memory"));
  m_memory->setWordWrap(true);
  blocks->layout()->addWidget(rowOf({rowsLabel, m_rowsInBlock}, blocks));
  blocks->layout()->addWidget(m_memory);

  QGroupBox* threads = group(tr("Speed"));
  m_threads = spinBox("sbThreads", 0, kMaxThreads, tr("Threads that encode"));
  m_threads->setSpecialValueText(tr("as the host decides"));
  auto* threadsLabel = new QLabel(tr("&Threads that encode:"), threads);
  threadsLabel->setBuddy(m_threads);
  m_threads->setToolTip(tr("At one time; the file is the same for any number of them."));
  threads->layout()->addWidget(rowOf({threadsLabel, m_threads}, threads));
  pageLayout()->addStretch();
  connect(m_rowsInBlock, &QSpinBox::valueChanged, this, &WriteBlocksPage::showMemory);
}

void WriteBlocksPage::load(const WriteColumnarSettings& settings) {
  m_rowsInBlock->setValue(settings.rowsInBlock);
  m_threads->setValue(settings.threadCount);
  showMemory();
}

void WriteBlocksPage::store(WriteColumnarSettings& settings) const {
  storeNumber(*m_rowsInBlock, settings.rowsInBlock);
  storeNumber(*m_threads, settings.threadCount);
}

void WriteBlocksPage::setInput(const PinColumns& columns, std::shared_ptr<const PinRows> rows) {
  m_columns = columns;
  m_rows = std::move(rows);
  showMemory();
}

void WriteBlocksPage::showMemory() {
  const BlockMemory memory = blockMemory(m_rowsInBlock->value(), m_columns, m_rows.get());
  const QString blocks =
      memory.blocksOfAMillionRows == 1
          ? tr("A million rows make 1 block.")
          : tr("A million rows make %1 blocks.").arg(countText(memory.blocksOfAMillionRows));
  m_memory->setText(
      memory.bytesOfBlock == 0
          ? blocks
          : tr("%1 With these columns a block takes about %2 before it is encoded, "
               "and writing about %3 of memory.")
                .arg(blocks, sizeText(memory.bytesOfBlock), sizeText(memory.bytesInWriting)));
}

}  // namespace kelvarin
