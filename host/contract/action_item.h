// The base of every action: its parameters, pins and lifecycle.
//
// A run calls init(), setComputeRoutine(), then `computeRoutine` until it answers true, then
// close(). The order of the virtual operations and of the data members is the host's binary
// contract: plug-ins are compiled against it.
// Threads: the lifecycle and the row routine run on one engine thread at a time, editors on the
// user-interface thread.
#pragma once

#include <cstdint>
#include <sstream>

#include <QString>
#include <QStringList>

#include "base/export.h"
#include "host/contract/global_parameters.h"
#include "host/contract/one_row.h"
#include "host/contract/pin_ports.h"
#include "host/xml/xml_node.h"

class QPixmap;
class QWidget;
class UpdateClassWidget;

class KELVARIN_CORE ActionItem {
 public:
  // True when the action has finished or must stop; false when it is to be called again.
  using ComputeRoutine = bool (*)(ActionItem* action);
  // What an action is to a graph: something in the middle, a reader or a writer of files.
  enum class Endpoint : std::int32_t { transform = 0, reader = 1, writer = 2 };

  // The XML element name.
  virtual const char* typeName() const = 0;
  virtual UpdateClassWidget* editPropertyFrame(QWidget* parent);
  virtual QPixmap* getImage(double size) const;
  virtual void addPinIn();
  virtual void addPinOut();
  virtual void removePinIn();
  virtual void removePinOut();
  virtual QString toolTip() const;
  virtual void getHelp() const;
  virtual QStringList getFileTypes() const;
  virtual QStringList getTags() const;
  virtual QStringList getKeywords() const;
  virtual QStringList getAlternativeNames() const;
  // A copy made through saveXML() and createFromXML(); the caller owns it.
  virtual ActionItem* clone(GlobalParameters* parameters);
  // Overrides call saveAI() first, append their attributes and children, and close the element.
  virtual void saveXML(std::wostringstream& out, QString name);
  // Non-zero: the run cannot start.
  virtual char init();
  virtual char close();
  virtual void setComputeRoutine() = 0;
  // Wakes threads that wait inside the action, when the run is stopped from outside.
  virtual void wakeAll();
  // Fraction done, 0 to 1; -1 when unknown.
  virtual float computeCompletion() const;
  virtual bool completionIn2Pass() const;
  virtual char canRunInParallel(QString what, bool* reason);
  virtual char fullTableRequiredToComputeMetas(int pin, bool* isKnown);
  // The file in which a pin's whole table is kept, and when it was written; an engine that keeps
  // none answers empty, 0.
  virtual QString getHDFile(int pin, bool forWriting);
  virtual long long getHDTime() const;
  virtual void clearHDFile();
  virtual ~ActionItem();
  // The caller owns the new action. Asked on any thread, so it changes nothing of this one.
  virtual ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) = 0;

  // Null when the pin is exhausted or not linked; valid until the next call for the same pin.
  const OneRow* getNextRowFromInPin(int pin) {
    return isInputPinLinked(pin) ? m_ports->inputs[static_cast<std::size_t>(pin)]->next() : nullptr;
  }
  // The columns of the pin's rows, known even when it has no row; null when the upstream action did
  // not announce any.
  const OneRow* announcedColumnsOfInPin(int pin) const;
  OneRow* getOutputRowForOutputPin(int pin) {
    return &m_ports->outputs[static_cast<std::size_t>(pin)]->row;
  }
  void setRowReadyForOutput(int pin) { m_ports->outputs[static_cast<std::size_t>(pin)]->publish(); }
  // The output row's names, types and sort order are final, though there may never be a row.
  void announceColumnsOfOutputPin(int pin) {
    m_ports->outputs[static_cast<std::size_t>(pin)]->isAnnounced = true;
  }
  // The rows after that one, as a batch, which is null when there are no more; for sinks.
  kelvarin::TakenBatch getNextBatchFromInPin(int pin) {
    return isInputPinLinked(pin) ? m_ports->inputs[static_cast<std::size_t>(pin)]->nextBatch()
                                 : kelvarin::TakenBatch{};
  }
  // Whether anybody takes the rows of an output pin.
  bool isOutputPinRead(int pin) const {
    return m_ports->outputs[static_cast<std::size_t>(pin)]->isRead;
  }
  // Rows of a pin that nothing reads, which were never made.
  void countRowsOfOutputPin(int pin, std::size_t count) {
    m_ports->outputs[static_cast<std::size_t>(pin)]->rowsPublished += static_cast<long long>(count);
  }
  bool isInputPinLinked(int pin) const {
    return m_ports != nullptr && pin >= 0 &&
           static_cast<std::size_t>(pin) < m_ports->inputs.size() &&
           m_ports->inputs[static_cast<std::size_t>(pin)] != nullptr;
  }
  ActionItem* getActionItemOnInPin(int pin) const;

  float completion() const { return computeCompletion(); }
  bool mustComputeFull() const { return m_run == nullptr || m_run->mustComputeFull; }
  RunRecord* run() const { return m_run; }
  // Marks the action and its run as failed.
  void failRun();
  bool hasFailed() const { return m_hasFailed; }

  QString expandString(QString text) const;
  // A path to read or to write: parameters replaced, relative names put below the graph's folders;
  // `extension` is appended to a name without one.
  QString expandFile(QString path) const;
  QString expandOutputFile(QString path, QString extension) const;

  // The user's name for the action in its graph; empty for a prototype.
  QString name() const;
  const XMLNode& node() const { return m_node; }
  // Switched off by the user: in a run its rows go through unchanged.
  bool isDisabled() const;
  GlobalParameters* globalParameters() const { return m_globalParameters; }
  int inputPinCount() const { return m_inputPinCount; }
  int outputPinCount() const { return m_outputPinCount; }
  Endpoint endpoint() const { return static_cast<Endpoint>(m_endpoint); }
  bool writesFiles() const { return m_fileAccess == kWritesFiles; }

  // For the engine.
  void attach(RunRecord* run, ActionPorts* ports);
  // Between init() and close().
  void setOpen(bool isOpen) { m_isOpen = isOpen; }
  bool isOpen() const { return m_isOpen; }
  bool compute() { return computeRoutine(this); }
  // It makes no more rows in this run.
  void setFinished(bool isFinished) { m_isFinished = isFinished; }
  bool isFinished() const { return m_isFinished; }

 protected:
  ActionItem(XMLNode node, GlobalParameters* parameters);
  ActionItem(const ActionItem&) = default;
  ActionItem& operator=(const ActionItem&) = default;

  static constexpr std::int32_t kReadsFiles = 0;
  static constexpr std::int32_t kWritesFiles = 2;

  // Writes the element's head and the attributes all actions share, and leaves the element open:
  // <TypeName name='...' version='...' x='...' y='...'
  void saveAI(std::wostringstream& out, QString name, double version) const;

  // The layout below is part of the contract.
  std::int32_t m_identifier = 0;  // free for the host; this one knows actions by their names
  std::int32_t m_endpoint = 0;    // see Endpoint
  XMLNode m_node;
  std::int32_t m_inputPinCount = 1;
  std::int32_t m_outputPinCount = 1;
  bool m_hasFailed = false;
  bool m_hasPosition = false;  // x or y was given
  std::int32_t m_x = 0;        // on the canvas, in logical pixels
  std::int32_t m_y = 0;
  std::int32_t m_fileAccess = kReadsFiles;
  bool m_isOpen = false;
  bool m_isFinished = false;
  std::int32_t m_copyNumber = 0;  // for hosts that run parallel copies; this one runs none
  GlobalParameters* m_globalParameters = nullptr;
  RunRecord* m_run = nullptr;
  ComputeRoutine computeRoutine = nullptr;
  ActionPorts* m_ports = nullptr;
  // Of parallel copies, the one that reads shared tables; null: this one. Set by hosts that run
  // them.
  ActionItem* m_primary = nullptr;

 private:
  friend struct ActionItemLayout;
};
