"""A local cluster of two worker processes gives what a single run gives."""
import warnings

import pxcards
import pxcards.dask
import pytest
from conftest import FILES
from dask.distributed import Client, LocalCluster


@pytest.fixture(scope="module")
def client():
    with LocalCluster(n_workers=2, threads_per_worker=1, host="127.0.0.1", protocol="tcp",
                      dashboard_address=None) as cluster, Client(cluster) as client:
        yield client


@pytest.fixture(autouse=True)
def no_faults():
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", pxcards.FaultWarning)
        yield


def compute(work, timeout=60):
    from dask.distributed import get_client
    return get_client().compute(work).result(timeout)


def test_the_cluster_gives_what_one_run_gives(client):
    alone = [one for path in FILES for one in pxcards.read(path)]
    bag = pxcards.dask.read(FILES, block_size=2000)
    assert bag.npartitions > 4
    assert len(client.scheduler_info()["workers"]) == 2
    together = compute(bag)
    assert [one.to_json() for one in together] == [one.to_json() for one in alone]
    sizes = bag.map(lambda one: [len(content.read()) for content in one.objects])
    assert compute(sizes) == [[content.size for content in one.objects] for one in alone]


def test_frame(client):
    alone = [one for path in FILES for one in pxcards.read(path)]
    table = compute(pxcards.dask.frame(FILES, block_size=2000))
    assert list(table.columns) == list(pxcards.dask.COLUMNS)
    assert list(table.name.fillna("")) == [one.name or "" for one in alone]
    assert list(table.telephones.fillna("")) == [
        "\n".join(number.value for number in one.telephones) for one in alone]
    assert list(table.part_of.fillna(0)) == [one.part_of or 0 for one in alone]
    columns = ["TEL", "name", "X-EVOLUTION-FILE-AS"]
    table = compute(pxcards.dask.frame(FILES, columns=columns, block_size=2000))
    assert table.reset_index(drop=True).equals(pxcards.frame(FILES, columns=columns))


def test_folders_and_files_that_cannot_be_read(client, tmp_path):
    card = b"BEGIN:VCARD\nFN:%d\nEND:VCARD\n"
    for number, name in enumerate(["b.vcf", "a.VCF", "c/d.vcs", "c/e.txt"]):
        (tmp_path / name).parent.mkdir(exist_ok=True)
        (tmp_path / name).write_bytes(card % number)
    names = pxcards.dask.read(tmp_path, block_size=1).map(lambda one: one.name)
    assert compute(names) == ["1", "0", "2"]
    assert compute(pxcards.dask.read([])) == []
    (tmp_path / "b.vcf").write_bytes(b"?")
    with pytest.raises(pxcards.Error, match="b.vcf: not a vCard"):
        compute(pxcards.dask.read(tmp_path))
    rest = pxcards.dask.read([tmp_path, tmp_path / "gone"], skip_unreadable=True)
    assert compute(rest.map(lambda one: one.name)) == ["1", "2"]
