#include "host/engine/action_chain.h"

#include <algorithm>

namespace kelvarin {

std::unique_ptr<ActionChain> ActionChain::endingWith(RunningAction& last, TaskPool& pool) {
  std::unique_ptr<ActionChain> chain(new ActionChain(last));
  if (!chain->findActions() || !chain->findEncoder()) {
    return nullptr;
  }
  chain->m_pipeline = std::make_unique<BatchPipeline>(pool, chain->m_chain, chain->m_outputPins);
  chain->claimActions();
  return chain;
}

ActionChain::~ActionChain() {
  if (m_source != nullptr && m_source->unitHolder() == this) {
    m_source->setUnitHolder(nullptr);
  }
  if (m_input != nullptr && m_input->borrower() == this) {
    m_input->setBorrower(nullptr);
  }
}

// Only the longest chain works ahead.
void ActionChain::claimActions() {
  for (RunningAction* action : m_actions) {
    action->setCovered(action != &m_last);
  }
  if (m_source != nullptr) {
    m_source->setCovered(m_source != &m_last);
  }
}

// From the last action upwards. Numbers of rows are known to the first action below a queue only;
// another one that needs them ends the chain above it.
bool ActionChain::findActions() {
  RunningAction* action = &m_last;
  int outputPin = m_last.reader() == nullptr ? 0 : m_last.reader()->pinIndex();
  while (action->source() == nullptr) {
    const BatchStage* stage =
        action->transform() == nullptr ? nullptr : action->transform()->stage();
    RowLink* input = action->input();
    if (stage == nullptr || input == nullptr || action->isFinished()) {
      return false;
    }
    m_actions.insert(m_actions.begin(), action);
    m_outputPins.insert(m_outputPins.begin(), outputPin);
    m_chain.stages.insert(m_chain.stages.begin(), stage);
    m_chain.stageActions.insert(m_chain.stageActions.begin(), &action->item());
    const bool isFirst = input->isQueue() || input->producer().hasPartOfUnit();
    if (isFirst) {
      m_input = input;
      return true;
    }
    if (stage->needsRowNumbers()) {
      return false;
    }
    outputPin = input->pinIndex();
    action = &input->producer();
  }
  if (!action->canReadUnits() || action->source()->maxUnitsAhead() < 1 ||
      action->rowsInBatch() > 0) {
    return false;
  }
  action->allowLateTexts();
  m_source = action;
  m_chain.source = action->source();
  m_chain.sourceAction = &action->item();
  return true;
}

// Whoever reads the rows has taken the first ones before: then a sink has its encoder, and an
// action that can be part of a longer chain is.
bool ActionChain::findEncoder() {
  const RowLink* reader = m_last.reader();
  if (reader == nullptr) {
    return true;
  }
  m_chain.encoder = reader->consumer().encoder();
  m_chain.sinkAction = &reader->consumer().item();
  return reader->rowsTaken() > 0;
}

bool ActionChain::isIntact() const {
  for (std::size_t i = 0; i < m_actions.size(); ++i) {
    if (m_actions[i]->isFinished() || m_actions[i]->transform()->stage() != m_chain.stages[i]) {
      return false;
    }
  }
  return true;
}

bool ActionChain::isDrained() const {
  return std::all_of(m_actions.begin(), m_actions.end(),
                     [](const RunningAction* action) { return action->input()->isDrained(); });
}

// What a shorter chain has begun comes first.
bool ActionChain::mayStart() const {
  const ActionChain* other = m_source != nullptr ? m_source->unitHolder() : m_input->borrower();
  return other == nullptr || other == this || !other->isAtWork();
}

bool ActionChain::advance() {
  if (m_isRetired || !mayStart()) {
    return false;
  }
  // What comes next may replace the batches that went between its actions, or pass them by.
  for (const RunningAction* action : m_actions) {
    action->input()->askOn();
  }
  return m_source != nullptr ? advanceSource() : advanceInput();
}

bool ActionChain::advanceSource() {
  m_source->setUnitHolder(this);
  if (!m_source->canReadUnits()) {
    return false;  // its routine has to say something first, or its rows suffice
  }
  m_pipeline->setHeld(false);
  const auto result = m_pipeline->next([this] { return mayWait(); });
  if (result != nullptr) {
    deliver(*result);
    return true;
  }
  if (!mayWait()) {
    return true;
  }
  m_isRetired = !m_source->source()->readOn();
  m_pipeline->readOn();
  return !m_isRetired;
}

// What is there anyway goes ahead; nobody above goes on before its rows are asked for.
bool ActionChain::advanceInput() {
  m_input->setBorrower(nullptr);
  if (m_pipeline->isEmpty()) {
    m_nextRow = m_last.record().firstRow + m_input->rowsTaken();
  }
  while (m_pipeline->isEmpty() || (m_pipeline->hasSpace() && m_input->isBatchAvailable())) {
    PublishedBatch borrowed = m_input->borrowBatch();
    if (borrowed.batch == nullptr) {
      break;
    }
    const auto rows = static_cast<long long>(borrowed.batch->rowCount());
    m_pipeline->push(std::move(borrowed.batch), std::move(borrowed.trail), m_nextRow);
    m_nextRow += rows;
  }
  m_input->setBorrower(this);
  const auto result = m_pipeline->next([this] { return mayWait(); });
  if (result == nullptr) {
    return !m_pipeline->isEmpty();  // else a single row comes next, or nothing
  }
  deliver(*result);
  return true;
}

void ActionChain::deliver(BatchPipeline::Result& result) {
  if (result.exception) {
    failWith(result);
    return;
  }
  if (m_source == nullptr) {
    if (result.isWhole) {
      deliverWhole(result, result.trail);
    } else {
      m_input->putBack(result.batch, result.trail);
    }
    return;
  }
  RowBatchPointer batch = m_source->accept(*result.unit);
  if (batch == nullptr || batch->rowCount() == 0) {
    return;
  }
  auto trail = std::make_shared<BatchTrail>(&m_source->output(0));
  if (m_actions.empty()) {
    const bool isEncoded = batch == result.batch;
    m_source->publish(
        0, {std::move(batch), std::move(trail), isEncoded ? std::move(result.encoded) : nullptr});
  } else if (result.isWhole && batch == result.batch) {
    deliverWhole(result, std::move(trail));
  } else {
    m_source->publish(0, {std::move(batch), std::move(trail), nullptr});
  }
}

PublishedBatch ActionChain::takeBack() {
  m_pipeline->setHeld(true);
  const auto result = m_pipeline->next([this] { return mayWait(); });
  if (result == nullptr) {
    return {};
  }
  if (result->exception) {
    failWith(*result);
    return {};
  }
  if (m_source == nullptr) {
    return {std::move(result->batch), std::move(result->trail), nullptr};
  }
  return {m_source->accept(*result->unit), nullptr, nullptr};
}

void ActionChain::failWith(const BatchPipeline::Result& result) const {
  RunningAction* thrower = m_source;
  if (result.step >= 0) {
    const auto step = static_cast<std::size_t>(result.step);
    thrower = step < m_actions.size() ? m_actions[step] : &m_last.reader()->consumer();
  }
  thrower->failWith(result.exception);
}

void ActionChain::deliverWhole(BatchPipeline::Result& result, BatchTrailPointer trail) {
  for (std::size_t i = 0; i < m_actions.size(); ++i) {
    RunningAction& action = *m_actions[i];
    BatchTrail::Origin origin{.maker = action.transform(),
                              .result = std::move(result.stages[i]),
                              .parent = std::move(trail)};
    action.input()->passBatch(origin.parent, origin.result.rowsDone);
    action.transform()->passRows(origin.result.rowsDone);
    if (&action == &m_last) {
      action.publish(std::move(origin), std::move(result.encoded));
      return;
    }
    const int pin = m_outputPins[i];
    const RowBatchPointer& output = origin.result.outputs[static_cast<std::size_t>(pin)];
    if (output == nullptr || output->rowCount() == 0) {
      settleInput(origin);
      return;
    }
    trail = std::make_shared<BatchTrail>(&action.output(pin), pin, std::move(origin));
  }
}

}  // namespace kelvarin
