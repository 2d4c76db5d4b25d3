"""Where Spark looks for data sources by itself: a module that is called pyspark_* has one."""

from encconv.spark import EncconvDataSource as DefaultSource

__all__ = ["DefaultSource"]
