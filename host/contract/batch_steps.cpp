#include "host/contract/batch_steps.h"

namespace kelvarin {

BatchUnit::~BatchUnit() = default;
BatchSource::~BatchSource() = default;
BatchStage::~BatchStage() = default;
BatchTransform::~BatchTransform() = default;
StageCounts::~StageCounts() = default;
EncodedBatch::~EncodedBatch() = default;
BatchEncoder::~BatchEncoder() = default;
BatchSink::~BatchSink() = default;

}  // namespace kelvarin
