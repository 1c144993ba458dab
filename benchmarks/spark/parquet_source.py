"""Parquet as a Python data source of Spark, made as that of the package is: what the benchmark compares it with."""

import json

import pyarrow.parquet
from pyspark.sql.datasource import DataSource, DataSourceReader, InputPartition
from pyspark.sql.pandas.types import from_arrow_schema


class RowGroup(InputPartition):
    def __init__(self, number):
        super().__init__(number)
        self.number = number


class ParquetDataSource(DataSource):
    """Options: path, columns and where as those of the format "kelvarin"; conditions are >= and < on numbers."""

    @classmethod
    def name(cls):
        return "parquet_by_python"

    def schema(self):
        schema = pyarrow.parquet.read_schema(self.options["path"])
        return from_arrow_schema(pyarrow.schema([schema.field(name) for name in json.loads(self.options["columns"])]))

    def reader(self, schema):
        return ParquetReader(self.options["path"], json.loads(self.options["columns"]),
                             json.loads(self.options.get("where") or "[]"))


class ParquetReader(DataSourceReader):
    def __init__(self, path, columns, where):
        self._path, self._columns, self._where = path, columns, where

    def partitions(self):
        with pyarrow.parquet.ParquetFile(self._path) as file:
            names = file.schema_arrow.names
            return [RowGroup(number) for number in range(file.num_row_groups)
                    if all(_may_hold(file.metadata.row_group(number).column(names.index(column)).statistics, operator, value)
                           for column, operator, value in self._where)]

    def read(self, partition):
        with pyarrow.parquet.ParquetFile(self._path) as file:
            yield from file.iter_batches(65_536, row_groups=[partition.number], columns=self._columns, use_threads=False)


def _may_hold(statistics, operator, value):
    return statistics.max >= value if operator == ">=" else statistics.min < value
