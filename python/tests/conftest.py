import pytest

import encconv


@pytest.fixture
def builtin_replaced():
    encconv.replace_builtin()
    yield
    encconv.restore_builtin()
